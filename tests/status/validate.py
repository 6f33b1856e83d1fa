# SPDX-License-Identifier: MIT
"""Holds JSON objects, a line each, against the schema that the argument names."""
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)

for line in sys.stdin:
    errors = [error.json_path + ": " + error.message
              for error in validator.iter_errors(json.loads(line))]
    print("; ".join(errors).replace("\n", " ") or "ok", flush=True)
