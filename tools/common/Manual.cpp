#include "tools/common/Manual.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace korvane::tools {

namespace {

/// The options that `--help` lists.
std::vector<const CLI::Option*> listedOptions(const CLI::App& app) {
    std::vector<const CLI::Option*> options = app.get_options();
    std::erase_if(options, [](const CLI::Option* option) { return option->get_group().empty(); });
    return options;
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

// The page.

/// A text as roff takes it: a line that begins with a full stop or an apostrophe would be a command.
std::string roff(std::string_view text) {
    std::string result;
    bool isLineStart = true;
    for (const char character : text) {
        if (isLineStart && (character == '.' || character == '\'')) result += "\\&";
        isLineStart = character == '\n';
        switch (character) {
        case '\\': result += "\\e"; break;
        case '-': result += "\\-"; break;
        case '\'': result += "\\(aq"; break;
        case '^': result += "\\(ha"; break;
        case '`': result += "\\(ga"; break;
        case '~': result += "\\(ti"; break;
        default: result += character;
        }
    }
    return result;
}

/// A line of roff of its own.
std::string line(std::string_view text) {
    return roff(text) + "\n";
}

std::string section(std::string_view title) {
    return ".SH " + std::string(title) + "\n";
}

/// Names, the kind of value and the value that stands without the option.
std::string headOf(const CLI::Option& option) {
    std::string head = "\\fB" + roff(option.get_name(option.get_positional(), true)) + "\\fP";
    if (takesValue(option)) head += " \\fI" + roff(option.get_type_name()) + "\\fP";
    if (!option.get_default_str().empty()) head += " (" + roff(option.get_default_str()) + ")";
    return head + "\n";
}

std::string optionsOf(const CLI::App& app) {
    std::string text;
    for (const CLI::Option* option : listedOptions(app))
        text += ".TP\n" + headOf(*option) + line(option->get_description());
    return text;
}

/// For the synopsis: what stands on the command line without a name before it.
std::string positionalsOf(const CLI::App& app) {
    std::string text;
    for (const CLI::Option* option : listedOptions(app)) {
        if (!option->get_positional()) continue;
        const std::string name = option->get_type_name();
        text += option->get_required() ? " " + name : " [" + name + "]";
    }
    return text;
}

/// Words as they stand, which the help lays out itself.
std::string laidOut(std::string_view text) {
    return ".nf\n" + line(text) + ".fi\n";
}

std::string firstSentence(std::string_view text) {
    return std::string(text.substr(0, text.find_first_of(".\n:")));
}

// The completion.

/// What a shell offers for the value of an option: a command, or nothing.
std::string offerFor(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    if (type.starts_with(kFile)) return "compgen -f -- \"$cur\"";
    if (type.starts_with(kFolder)) return "compgen -d -- \"$cur\"";
    // A choice, as in "TEXT:{EC,RSA}".
    const std::size_t open = type.find('{');
    if (open == std::string::npos) return {};
    std::string choices = type.substr(open + 1, type.find('}', open) - open - 1);
    std::replace(choices.begin(), choices.end(), ',', ' ');
    return "compgen -W \"" + choices + "\" -- \"$cur\"";
}

std::string namesOf(const CLI::Option& option, std::string_view separator) {
    std::string names;
    for (const auto& [dashes, list] :
         {std::pair("-", option.get_snames()), std::pair("--", option.get_lnames())})
        for (const std::string& name : list)
            names += (names.empty() ? "" : std::string(separator)) + dashes + name;
    return names;
}

std::string caseOf(const CLI::Option& option) {
    const std::string offer = offerFor(option);
    const std::string act = offer.empty() ? "" : "mapfile -t COMPREPLY < <(" + offer + "); ";
    return "        " + namesOf(option, "|") + ") " + act + "return ;;\n";
}

} // namespace

std::string manualPage(const CLI::App& app, const std::string& version) {
    const std::string& name = app.get_name();
    std::string page = ".TH " + name + " 1 \"\" \"" + version + "\" \"Korvane\"\n";
    page += section("NAME") + name + " \\- " + line(firstSentence(app.get_description()));
    page += section("SYNOPSIS") + ".B " + name + "\n[OPTIONS]" + positionalsOf(app) + "\n";
    const auto subcommands = app.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* subcommand : subcommands)
        page += ".br\n.B " + name + " " + subcommand->get_name() + "\n[OPTIONS] ARGUMENTS\n";
    page += section("DESCRIPTION") + line(app.get_description()) + section("OPTIONS") + optionsOf(app);
    for (const CLI::App* subcommand : subcommands)
        page += ".SS " + subcommand->get_name() + "\n" + line(subcommand->get_description()) +
                optionsOf(*subcommand);
    return page + section("NOTES") + laidOut(app.get_footer());
}

std::string bashCompletion(const CLI::App& app) {
    std::string names;
    std::string cases;
    for (const CLI::Option* option : listedOptions(app)) {
        if (option->get_positional()) continue; // a file, which the shell completes by itself
        names += (names.empty() ? "" : " ") + namesOf(*option, " ");
        if (takesValue(*option)) cases += caseOf(*option);
    }
    for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; }))
        names += " " + subcommand->get_name();
    std::string function = "_" + app.get_name();
    std::replace(function.begin(), function.end(), '-', '_');
    return function +
           "() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}\n"
           "    # \"--option=value\" comes as three words.\n"
           "    [[ $cur == = ]] && cur=\n"
           "    [[ $prev == = ]] && prev=${COMP_WORDS[COMP_CWORD-2]}\n"
           "    COMPREPLY=()\n"
           "    case $prev in\n" +
           cases +
           "    esac\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"" +
           names +
           "\" -- \"$cur\")\n"
           "}\n"
           "complete -o filenames -o bashdefault -o default -F " +
           function + " " + app.get_name() + "\n";
}

} // namespace korvane::tools
