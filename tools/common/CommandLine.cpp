#include "CommandLine.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace Orvo {
namespace Tools {
namespace {

const std::string kNegativeMark = "\x01";

// How the user wrote the option getopt_long refused. A long option's word has been passed over
// (it lies between `first`, the word the scan began at, and optind); a short one is in optopt.
std::string refusedOption(char* const* argv, int first) {
    const int last = ::optind - 1;
    const bool isLong = last >= first && std::strncmp(argv[last], "--", 2) == 0;
    if (!isLong && ::optopt != 0) return std::string("-") + static_cast<char>(::optopt);
    const std::string word = argv[last];
    return word.substr(0, word.find('='));
}

} // namespace

std::vector<std::string> parseCommandLine(const std::vector<std::string>& arguments, const char* shortOptions,
                                          const option* longOptions, const OptionHandler& onOption) {
    // A negative number ("-5", "-.5") is a value, never an option: getopt_long sees it masked.
    const auto isNegativeNumber = [](const std::string& word) {
        return word.size() > 1 && word[0] == '-' &&
               (std::isdigit(static_cast<unsigned char>(word[1])) || word[1] == '.');
    };
    std::vector<std::string> words(1, "tool");
    for (const std::string& argument : arguments)
        words.push_back(isNegativeNumber(argument) ? kNegativeMark + argument : argument);
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(&word[0]);
    argv.push_back(nullptr);
    const int argc = static_cast<int>(words.size());
    // A ':' (after a leading '+', which stops at the first operand) reports a missing value
    // apart from an unknown option; getopt itself prints nothing.
    const bool stopAtOperand = shortOptions[0] == '+';
    const std::string optionString = (stopAtOperand ? "+:" : ":") + std::string(shortOptions + stopAtOperand);
    ::opterr = 0;
    ::optind = 0; // a fresh scan, also after an earlier one
    for (;;) {
        const int first = ::optind == 0 ? 1 : ::optind;
        const int option = ::getopt_long(argc, argv.data(), optionString.c_str(), longOptions, nullptr);
        if (option == -1) break;
        if (option == '?' || option == ':') {
            const std::string name = refusedOption(argv.data(), first);
            throw UsageError(option == ':' ? name + " needs a value" : "unknown option " + name);
        }
        const bool masked =
            ::optarg != nullptr && kNegativeMark.compare(0, std::string::npos, ::optarg, kNegativeMark.size()) == 0;
        onOption(option, masked ? ::optarg + kNegativeMark.size() : ::optarg);
    }
    std::vector<std::string> operands(argv.begin() + ::optind, argv.end() - 1);
    for (std::string& operand : operands)
        if (operand.compare(0, kNegativeMark.size(), kNegativeMark) == 0) operand.erase(0, kNegativeMark.size());
    return operands;
}

int runTool(const char* name, const std::function<int()>& body) {
    try {
        return body();
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s: %s (see %s --help)\n", name, error.what(), name);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 1;
    }
}

} // namespace Tools
} // namespace Orvo
