#pragma once
// Texts of tarnwick-cli, the command-line front end.

#include <string>
#include <vector>

namespace tarnwick::L10n::Cli {

std::string unknownCommand(const std::string& word);
std::string unknownOption(const std::string& option);
std::string missingValue(const std::string& option);
std::string unexpectedValue(const std::string& option);
std::string badValue(const std::string& option, const std::string& value);
std::string missingOption(const std::string& option);
std::string missingInput();
std::string oneProductFile();
std::string noInputs();
std::string missingCommand();
/// " Did you mean …?", appended to a message about a mistyped word.
std::string didYouMean(const std::string& word);
/// " Valid values: a, b, c.", appended to a refused value.
std::string validValues(const std::vector<std::string>& values);
std::string unknownTarget(const std::string& text, const std::vector<std::string>& valid);
std::string espOnly(const std::string& option);
std::string targetWithProduct();
std::string noSuchFile();
std::string alreadyExists(const std::string& file);
std::string notAProductToReplace(const std::string& file);
/// A label followed by a colon as the language writes it ("Name:", « Nom : »).
std::string labelled(const std::string& label);
std::string noUSBPort();
/// A port written as a network port that does not parse.
std::string invalidNetworkPort(const std::string& name);
std::string severalPorts(const std::vector<std::string>& ports);
std::string noPortsFound();
std::string packed(const std::string& file, int count);
std::string noFindings();
std::string warningPrefix();
std::string errorPrefix();
std::string yes();
std::string no();
/// The pointer to a command's help after a usage error (`command` empty: the overview).
std::string seeHelp(const std::string& command);

/// Usage and description of the whole program and of each command.
std::string helpOverview();
std::string helpFlash();
std::string helpPack();
std::string helpCheck();
std::string helpInfo();
std::string helpPorts();
std::string helpStation();

} // namespace tarnwick::L10n::Cli
