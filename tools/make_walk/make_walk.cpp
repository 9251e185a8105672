/// \file
/// The program gait-make-walk: writes a modelled walk as a walk folder.

#include "make_walk_arguments.h"
#include "walk_folder.h"
#include "walk_model.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using namespace gait_make_walk;

/// "walk" for "walks/walk" and for "walks/walk/".
std::string last_part(const std::filesystem::path& folder) {
  return (std::filesystem::absolute(folder) / "")
      .lexically_normal()
      .parent_path()
      .filename()
      .string();
}

void write(arguments& arguments) {
  arguments.settings.name = last_part(arguments.folder);
  const gait_walk::walk walk = gait_walk::make_walk(arguments.settings);
  if (std::filesystem::exists(arguments.folder) && !arguments.force) {
    throw std::runtime_error(arguments.folder.string() +
                             " is there already (--force writes over it)");
  }
  gait_walk::write_walk_folder(walk, arguments.folder);
}

int run(int argc, char** argv) {
  CLI::App app;
  arguments arguments;
  add_options(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : exit_bad_usage;
  }
  write(arguments);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::invalid_argument& error) {
    std::cerr << "gait-make-walk: " << error.what() << '\n';
    return exit_bad_usage;
  } catch (const std::exception& error) {
    std::cerr << "gait-make-walk: " << error.what() << '\n';
    return exit_failed;
  }
}
