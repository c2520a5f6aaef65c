// SPDX-License-Identifier: MIT
#include "commands/reference.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include <CLI/CLI.hpp>

namespace caption
{

static std::vector<const CLI::App *> Commands(const CLI::App &tool)
{
    return tool.get_subcommands([](const CLI::App *) { return true; });
}

// "-h" and "--help", or the name of a positional.
static std::vector<std::string> Names(const CLI::Option &option)
{
    std::vector<std::string> names;

    for (const std::string &name : option.get_snames()) names.push_back("-" + name);
    for (const std::string &name : option.get_lnames()) names.push_back("--" + name);
    if (names.empty()) names.push_back(option.get_name());
    return names;
}

static bool IsPositional(const CLI::Option &option)
{
    return option.get_snames().empty() && option.get_lnames().empty();
}

static bool TakesValue(const CLI::Option &option)
{
    return option.get_items_expected_max() > 0;
}

static std::string Joined(const std::vector<std::string> &words, const std::string &between)
{
    std::string text;

    for (const std::string &word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

// The arguments for compgen: directories, files, or words to choose from. Only such words are lower-case.
static std::string Generator(const CLI::Option &option)
{
    std::string type = option.get_type_name();

    if (type == "DIR") return "-d";
    if (type == "FILE" || type == "PNG" || option.get_name() == "FILE") return "-f";
    if (std::none_of(type.begin(), type.end(), [](unsigned char letter) { return std::isupper(letter); })) {
        std::replace(type.begin(), type.end(), '|', ' ');
        return "-W '" + type + "'";
    }
    return "-W ''";
}

static void CompleteCommand(const CLI::App &command, std::ostream &values, std::ostream &words)
{
    std::vector<std::string> options;
    std::string positional = "-W ''";

    for (const CLI::Option *const option : command.get_options()) {
        if (IsPositional(*option)) {
            positional = Generator(*option);
            continue;
        }
        for (const std::string &name : Names(*option)) {
            options.push_back(name);
            if (!TakesValue(*option)) continue;
            values << "        '" << command.get_name() << " " << name << "') generate=\""
                   << Generator(*option) << "\" ;;\n";
        }
    }
    words << "            '" << command.get_name() << " -'*) generate=\"-W '" << Joined(options, " ")
          << "'\" ;;\n"
          << "            '" << command.get_name() << " '*) generate=\"" << positional << "\" ;;\n";
}

std::string BashCompletion(const CLI::App &tool)
{
    const std::string &name = tool.get_name();
    std::vector<std::string> names;
    std::ostringstream values;
    std::ostringstream words;

    for (const CLI::App *const command : Commands(tool)) {
        names.push_back(command->get_name());
        CompleteCommand(*command, values, words);
    }
    std::vector<std::string> first = names;
    for (const CLI::Option *const option : tool.get_options()) {
        for (const std::string &option_name : Names(*option)) first.push_back(option_name);
    }

    std::ostringstream script;
    script << "# Completion of " << name << " for bash, as \"" << name << " completion bash\" prints it.\n"
           << "_kova_caption()\n"
              "{\n"
              "    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
              "    local command= generate= word\n"
              "    # Of --option=value bash makes three words.\n"
              "    [ \"$before\" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}\n"
              "    [ \"$current\" != = ] || current=\n"
              "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD - 1}\"; do\n"
              "        case $word in\n"
              "            "
           << Joined(names, " | ")
           << ") command=$word && break ;;\n"
              "        esac\n"
              "    done\n"
              "    case \"$command $before\" in\n"
           << values.str() << "        *) case \"$command $current\" in\n"
           << words.str() << "            *) generate=\"-W '" << Joined(first, " ")
           << "'\" ;;\n"
              "        esac ;;\n"
              "    esac\n"
              "    case $generate in -f | -d) compopt -o filenames 2>/dev/null ;; esac\n"
              "    eval \"mapfile -t COMPREPLY < <(compgen $generate -- \\\"\\$current\\\")\"\n"
              "}\n"
              "complete -F _kova_caption "
           << name << "\n";
    return script.str();
}

// Escapes text for roff.
static std::string Plain(const std::string &text)
{
    std::string roff;

    for (const char character : text) {
        if (roff.empty() && (character == '.' || character == '\'')) roff += "\\&";
        if (character == '\\') {
            roff += "\\e";
        } else if (character == '-') {
            roff += "\\-";
        } else {
            roff += character;
        }
    }
    return roff;
}

// Breaks text into lines of the length allowed in a manual page's source; man reflows them.
static std::string Filled(const std::string &text)
{
    std::istringstream words(text);
    std::string filled;
    std::string line;

    for (std::string word; words >> word;) {
        if (!line.empty() && Plain(line + " " + word).size() > 78) {
            filled += Plain(line) + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    return filled + Plain(line);
}

static std::string Head(const CLI::Option &option)
{
    std::vector<std::string> names;

    for (const std::string &name : Names(option)) names.push_back("\\fB" + Plain(name) + "\\fR");
    std::string head = Joined(names, ", ");
    if (TakesValue(option) && !IsPositional(option)) head += " \\fI" + Plain(option.get_type_name()) + "\\fR";
    return head;
}

static void DescribeOptions(const CLI::App &command, std::ostream &page)
{
    for (const CLI::Option *const option : command.get_options()) {
        page << ".TP\n"
             << Head(*option) << "\n"
             << Filled(option->get_description() + (option->get_required() ? "; required." : ".")) << "\n";
    }
}

static std::string InCapitals(std::string text)
{
    for (char &letter : text) letter = char(std::toupper(static_cast<unsigned char>(letter)));
    return text;
}

// Indented lines are printed verbatim. A line that is not indented is a heading and ends in a colon.
static void DescribeFooter(const CLI::App &command, bool sections, std::ostream &page)
{
    std::istringstream footer(command.get_footer());
    bool asItStands = false;

    for (std::string line; std::getline(footer, line);) {
        if (line.empty()) continue;
        const bool indented = line[0] == ' ';
        if (asItStands && !indented) page << ".fi\n.RE\n";
        if (!asItStands && indented) page << ".RS 4\n.nf\n";
        if (indented) {
            page << Plain(line.substr(2)) << "\n";
        } else if (sections) {
            page << ".SH " << InCapitals(line.substr(0, line.size() - 1)) << "\n";
        } else {
            page << ".P\n" << Plain(line) << "\n";
        }
        asItStands = indented;
    }
    if (asItStands) page << ".fi\n.RE\n";
}

std::string ManualPage(const CLI::App &tool)
{
    const std::string name = Plain(tool.get_name());
    std::ostringstream page;

    page << ".TH " << InCapitals(name) << " 1 " KOVA_DATE " \"TextDisplay " KOVA_VERSION "\"\n"
         << ".SH NAME\n"
         << name << " \\- " << Plain(tool.get_description()) << "\n"
         << ".SH SYNOPSIS\n"
         << ".B " << name << "\n"
         << "\\fICOMMAND\\fR [\\fIOPTIONS\\fR] [\\fIFILE\\fR]\n"
         << ".SH OPTIONS\n";
    DescribeOptions(tool, page);
    page << ".SH COMMANDS\n";
    for (const CLI::App *const command : Commands(tool)) {
        page << ".SS " << Plain(command->get_name()) << "\n"
             << Filled(command->get_description() + ".") << "\n";
        DescribeOptions(*command, page);
        DescribeFooter(*command, false, page);
    }
    DescribeFooter(tool, true, page);
    return page.str();
}

} // namespace caption
