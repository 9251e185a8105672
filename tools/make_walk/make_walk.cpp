/// \file
/// The program gait-make-walk: writes a modelled walk as a walk folder.

#include "walk_folder.h"
#include "walk_model.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

namespace {

constexpr int failed = 1;
constexpr int bad_usage = 2;

struct arguments {
  std::filesystem::path folder;
  bool force = false;
  gait_walk::walk_settings settings;
};

void add_options(CLI::App& app, arguments& arguments) {
  const std::map<std::string, gait_walk::worn_on> feet = {{"both", gait_walk::worn_on::both},
                                                          {"left", gait_walk::worn_on::left},
                                                          {"right", gait_walk::worn_on::right}};
  gait_walk::walk_settings& settings = arguments.settings;
  app.add_option("FOLDER", arguments.folder, "Folder to write; its last part names the walk")
      ->required();
  app.add_option("--strides", settings.strides, "Strides of each foot, 1 to 1000000")
      ->capture_default_str();
  app.add_option("--seed", settings.seed, "The same seed and options make the same walk")
      ->capture_default_str();
  app.add_option("--feet", settings.feet, "Feet with a sensor: both, left or right")
      ->transform(CLI::CheckedTransformer(feet).description(""))
      ->type_name("FEET")
      ->default_str("both");
  app.add_option("--turns", settings.turns, "Turns by 180 degrees")->capture_default_str();
  app.add_option("--pauses", settings.pauses, "Times that the person stops and walks on")
      ->capture_default_str();
  app.add_option("--outliers", settings.outliers, "Stumbles, excluded as outliers")
      ->capture_default_str();
  app.add_option("--lost", settings.lost,
                 "Strides of one foot that were not found, left and right by turns")
      ->capture_default_str();
  app.add_option("--missing", settings.missing, "Share of values that were not measured, 0 to 1")
      ->capture_default_str();
  app.add_option("--rate", settings.rate, "Sampling rate in Hz, 50 to 1000")->capture_default_str();
  app.add_flag("--force", arguments.force,
               "Write into a folder that is there, over the tables in it");
}

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
  CLI::App app("Writes a walk that is modelled, not measured, as a walk folder.", "gait-make-walk");
  arguments arguments;
  add_options(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : bad_usage;
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
    return bad_usage;
  } catch (const std::exception& error) {
    std::cerr << "gait-make-walk: " << error.what() << '\n';
    return failed;
  }
}
