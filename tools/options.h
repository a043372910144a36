// Options that several commands have, and the checks of their values.
#pragma once

#include <string>

namespace CLI {
class App;
class Validator;
} // namespace CLI

namespace tools {

/// A decimal number of [low, high]: neither NaN nor infinite, nothing before or after it.
CLI::Validator number(double low, double high);
/// The same without a fraction.
CLI::Validator wholeNumber(double low, double high);

/// Adds --password and --password-file, of which one can be given; the second keeps the password off the command line,
/// which every user of the machine can read. Sets `password`, which lives as long as the command.
void addPasswordOptions(CLI::App &command, std::string &password);

/// Adds --hits-limit: how large a highlight file may be. Its default is that of the environment. Sets `megabytes`,
/// which lives as long as the command.
void addHitsLimitOption(CLI::App &command, unsigned &megabytes);

} // namespace tools
