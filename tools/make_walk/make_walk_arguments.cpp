#include "make_walk_arguments.h"

#include <gait/version.h>

#include <map>
#include <string>

namespace gait_make_walk {
namespace {

constexpr const char* footer =
    R"(The walk is like a measured one in form and size, for trying things out; draw no conclusion
about people from it. docs/walk-folder.md describes the tables that are written.

Examples:
  gait-make-walk monday/
  gait-make-walk --strides 200 --turns 4 --missing 0.01 tuesday/
  gait-make-walk --feet right --turns 0 short/

Exit codes:
  0  the walk was written
  1  the walk could not be written
  2  the command line is wrong
)";

}  // namespace

void add_options(CLI::App& app, arguments& arguments) {
  const std::map<std::string, gait_walk::worn_on> feet = {{"both", gait_walk::worn_on::both},
                                                          {"left", gait_walk::worn_on::left},
                                                          {"right", gait_walk::worn_on::right}};
  gait_walk::walk_settings& settings = arguments.settings;
  app.name("gait-make-walk");
  app.description("Writes a walk that is modelled, not measured, as a walk folder.");
  app.footer(footer);
  app.set_help_flag("-h,--help", "Print this help");
  app.set_version_flag("--version", "gait-make-walk " GAIT_STATISTICS_VERSION, "Print the version");
  app.add_option("FOLDER", arguments.folder, "Folder to write; its last part names the walk")
      ->required()
      ->type_name("");
  app.add_option("--strides", settings.strides, "Strides of each foot, 1 to 1000000")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--seed", settings.seed, "The same seed and options make the same walk")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--feet", settings.feet, "Feet with a sensor: both, left or right")
      ->transform(CLI::CheckedTransformer(feet).description(""))
      ->type_name("FEET")
      ->default_str("both");
  app.add_option("--turns", settings.turns, "Turns by 180 degrees")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--pauses", settings.pauses, "Times that the person stops and walks on")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--outliers", settings.outliers, "Stumbles, excluded as outliers")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--lost", settings.lost,
                 "Strides of one foot that were not found, left and right by turns")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--missing", settings.missing, "Share of values that were not measured, 0 to 1")
      ->type_name("SHARE")
      ->capture_default_str();
  app.add_option("--rate", settings.rate, "Sampling rate in Hz, 50 to 1000")
      ->type_name("N")
      ->capture_default_str();
  app.add_flag("--force", arguments.force,
               "Write into a folder that is there, over the tables in it");
}

}  // namespace gait_make_walk
