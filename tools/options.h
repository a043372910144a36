// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Options that several commands have, and the checks of their values.
#pragma once

#include <string>
#include <vector>

#include "host/document/processes.h"

namespace CLI {
class App;
class Validator;
} // namespace CLI

namespace tools {

/// A decimal number of [low, high]: neither NaN nor infinite, nothing before or after it.
CLI::Validator number(double low, double high);
/// The same without a fraction.
CLI::Validator wholeNumber(double low, double high);

/// One of these values.
CLI::Validator oneOf(const std::vector<std::string> &values);

/// Adds --password and --password-file, of which one can be given. Every user of the machine can read the command line;
/// the second option keeps the password off it. Sets `password`, which outlives the command.
void addPasswordOptions(CLI::App &command, std::string &password);

/// Adds --hits-limit: the maximum size of a highlight file. The environment can set its default. Sets `megabytes`,
/// which outlives the command.
void addHitsLimitOption(CLI::App &command, unsigned &megabytes);

/// Adds --document-memory and --page-time: what the processes that read documents may take. Sets the options, which
/// outlive the command.
void addProcessOptions(CLI::App &command, host::ProcessOptions &options);

} // namespace tools
