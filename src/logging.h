// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageLogContext>
#include <QString>
#include <QVariant>
#include <QtGlobal>

/// \file
/// The program's two voices.
///
/// Both files lie beside the program, are UTF-8, and are opened, appended to and closed anew for
/// each message, so that every line is on the disk even if the process ends abnormally. A file that
/// cannot be opened loses the message without a word anywhere; a device or a pipe that stands in
/// its place at the first message loses all messages of the run.

/// The message handler for qInstallMessageHandler: appends \a message to "plugin.log" as one line,
/// "Debug: …", "Warning: …" or "Critical: …" by its \a type; an info message becomes an empty line.
/// A fatal message is not written: the process aborts. The \a context is not used.
void myMessageOutput(QtMsgType type, const QMessageLogContext &context, const QString &message);

/// The line of "plugin.log" that myMessageOutput() makes of a message, without its line end.
QString logLine(QtMsgType type, const QString &message);

/// Has every message of the program reach the handler, whatever Qt logging rules the machine or the
/// environment sets: some distributions switch debug lines off for all programs.
void keepEveryMessage();

/// The text with which the debug stream shows \a value: lists as "(…)" with every version of Qt.
QString loggedForm(const QVariant &value);

/// Appends \a message and a line feed to "pluginError.txt", whose text the manager shows to the
/// user.
void writeErrorFile(const QString &message);
