/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/tools/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

extern char** environ;

std::string contentOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

Ended runProgram(const std::string& program, std::vector<std::string> arguments)
{
    std::string folder = testing::TempDir() + "program-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr)
    {
        ADD_FAILURE() << "cannot make " << folder;
        return {};
    }
    const std::string output = folder + "/out";
    const std::string errors = folder + "/err";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), flags, 0600);

    arguments.insert(arguments.begin(), program);
    std::vector<char*> raw;
    raw.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
    {
        raw.push_back(argument.data());
    }
    raw.push_back(nullptr);
    pid_t process = 0;
    int status = 0;
    Ended ended;
    if (posix_spawn(&process, program.c_str(), &actions, nullptr, raw.data(), environ) == 0 &&
        waitpid(process, &status, 0) == process && WIFEXITED(status))
    {
        ended.code = WEXITSTATUS(status);
    }
    posix_spawn_file_actions_destroy(&actions);
    ended.output = contentOf(output);
    ended.errors = contentOf(errors);
    std::filesystem::remove_all(folder);
    return ended;
}
