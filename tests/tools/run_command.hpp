// Runs the command as a user would, as a process of its own, and keeps what it printed.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/scratch_directory.hpp"

namespace tvx::test {

struct Outcome {
  int status;  // exit status; 128 and the signal's number when one ended the process
  std::string output;
  std::string errors;
  long peak_kib;  // largest resident size
};

// `input` is the standard input. With `output_path` the standard output goes there instead of into
// the outcome.
inline Outcome run_command(const std::vector<std::string>& arguments, const std::string& input = {},
                           const std::string& output_path = {}) {
  const ScratchDirectory scratch;
  const std::string in = scratch.write("in", input);
  const std::string out = output_path.empty() ? scratch.path("out") : output_path;
  const std::string err = scratch.path("err");

  std::vector<char*> argv{const_cast<char*>(TVX_COMMAND)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
  pid_t process = 0;
  const int failed = ::posix_spawn(&process, TVX_COMMAND, &files, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (failed != 0) throw std::runtime_error("cannot run " TVX_COMMAND);

  int status = 0;
  struct rusage usage {};
  while (::wait4(process, &status, 0, &usage) < 0) continue;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), scratch.read("out"),
          scratch.read("err"), usage.ru_maxrss};
}

}  // namespace tvx::test
