// SPDX-License-Identifier: MIT
// kova-caption: draws subtitles through the display library. Its commands are in commands/.
#include <csignal>
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "base/failure.h"
#include "commands/command.h"
#include "terminal/report.h"
#include "terminal/stop_signals.h"

namespace
{

enum { EXIT_OK = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

// The library prints on standard output when a context becomes active. Standard output is redirected to
// standard error, so that only the tool's own output goes to the original one.
std::FILE *KeepStandardOutput()
{
    std::fflush(stdout);
    std::FILE *const out = fdopen(dup(STDOUT_FILENO), "w");
    if (!out || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw caption::Failure("standard output is closed; redirect it to a file or a terminal");
    }
    return out;
}

std::string InOneLine(const CLI::App &tool, const CLI::Error &error)
{
    const std::vector<std::string> unknown = tool.remaining();
    std::string command = tool.get_name();
    std::string reason = error.what();

    if (tool.get_subcommands().empty() && !unknown.empty()) {
        reason = "unknown command or option '" + unknown.front() + "'";
    }
    for (const CLI::App *given : tool.get_subcommands()) command += " " + given->get_name();
    return reason + "; see " + command + " --help";
}

int Run(int argc, char **argv)
{
    CLI::App tool("Draw subtitles the way a TV's on-screen display does", "kova-caption");
    const std::vector<caption::Command> commands = caption::AddCommands(tool);

    try {
        tool.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == EXIT_OK) return tool.exit(error); // --help, --version
        caption::Report(InOneLine(tool, error));
        return EXIT_USAGE;
    }
    std::FILE *const out = KeepStandardOutput();
    for (const caption::Command &command : commands) {
        if (command.line->parsed()) command.run(out);
    }
    if (std::fclose(out) != 0)
        throw caption::Failure("writing to standard output failed; check whether the disk is full");
    return EXIT_OK;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return Run(argc, argv);
    } catch (const caption::Interrupted &interrupted) {
        std::signal(interrupted.signal, SIG_DFL);
        return std::raise(interrupted.signal);
    } catch (const caption::WrongUsage &error) {
        caption::Report(error.what());
        return EXIT_USAGE;
    } catch (const std::exception &error) {
        caption::Report(error.what());
        return EXIT_FAILED;
    }
}
