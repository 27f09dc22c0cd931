#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "temp_folder.h"

namespace dpm::testing {

struct CliResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs a dpm-cli program with the arguments, in `workFolder`, and returns its exit status
// and what it wrote. Standard input is empty; the outputs go through files, so that a
// large output can never block it.
inline CliResult RunCli(const std::filesystem::path& program, const std::vector<std::string>& args,
                        const std::filesystem::path& workFolder) {
  const std::filesystem::path out = workFolder / ".cli-out";
  const std::filesystem::path err = workFolder / ".cli-err";
  const pid_t pid = fork();
  if (pid == 0) {
    if (chdir(workFolder.c_str()) != 0) _exit(127);
    const int in = open("/dev/null", O_RDONLY);
    const int o = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int e = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(in, STDIN_FILENO);
    dup2(o, STDOUT_FILENO);
    dup2(e, STDERR_FILENO);
    std::vector<std::string> all = {program.string()};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  CliResult result{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), FileText(out), FileText(err)};
  std::filesystem::remove(out);
  std::filesystem::remove(err);
  return result;
}

}  // namespace dpm::testing
