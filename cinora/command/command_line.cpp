#include "cinora/command/command_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <set>

#include "cinora/command/editor_entry.h"
#include "cinora/command/progress_bar.h"
#include "cinora/export/exporter.h"
#include "cinora/export/media_guard.h"
#include "cinora/host/description.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "cinora/support/interruption.h"
#include "platform/paths.h"
#include "platform/system.h"

namespace cinora {
namespace {

constexpr char version[] = "cinora 0.92";
constexpr char unwritableOutput[] = "standard output cannot be written";
constexpr int maxThreads = 256;

struct Arguments {
  std::string file;  // of `cinora FILE`
  std::string input, output, frames, effect, plugins;
  OutputRequest how;
  std::vector<std::string> settings;
  int threads = 0;
  bool quiet = false, json = false;
};

/// A line for standard error: nothing in a file's name or contents breaks it or reaches the terminal as a command.
void say(std::string line) {
  for (char& c : line)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  std::cerr << "cinora: " << line << '\n';
}

/// Warnings, each said once.
class Warnings {
 public:
  void report(Host& host) {
    for (const std::string& line : host.takeMessages())
      if (said_.insert(line).second) say("warning: " + line);
  }

 private:
  std::set<std::string> said_;
};

HostOptions hostOptions(const Arguments& arguments) {
  HostOptions options{.settingsFile = Settings::userFile(), .pluginFolder = arguments.plugins, .overrides = {}};
  options.overrides.emplace_back("auto_save", "0");  // looking at a film writes no backups
  for (const std::string& setting : arguments.settings) {
    size_t equals = setting.find('=');
    if (equals == 0 || equals == setting.npos) throw WrongUsage("--set " + setting + ": KEY=VALUE is wanted");
    options.overrides.emplace_back(setting.substr(0, equals), setting.substr(equals + 1));
  }
  options.threads = arguments.threads;
  return options;
}

HostOptions hostOptions(const Arguments& arguments, const FilmFile& film) {
  HostOptions options = hostOptions(arguments);
  options.wantedWidth = film.width;
  options.wantedHeight = film.height;
  return options;
}

/// The film of INPUT, opened in a host of its own.
struct OpenFilm {
  explicit OpenFilm(const Arguments& arguments) : OpenFilm(arguments, readFilmFile(arguments.input)) {}

  Host host;
  Warnings warnings;

 private:
  OpenFilm(const Arguments& arguments, const FilmFile& film) : host(hostOptions(arguments, film)) {
    openProject(host, film);
    warnings.report(host);
  }
};

void print(const std::string& text) {
  if (!(std::cout << text << std::flush)) throw Failure(unwritableOutput);
}

bool sameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return std::filesystem::equivalent(platform::nativePath(a), platform::exactPath(b), error);
}

int render(const Arguments& arguments) {
  projectKind(arguments.input);
  ExportRequest request{.output = arguments.how};
  request.output.path = arguments.output;
  request.output.threads = arguments.threads;
  std::optional<FrameRange> range;
  if (!arguments.frames.empty() && !(range = parseFrameRange(arguments.frames)))
    throw WrongUsage("--frames " + arguments.frames + ": N or FIRST-LAST is wanted, counted from 1");
  checkOutput(request.output, range ? range->last - range->first + 1 : 1);

  OpenFilm film(arguments);
  int frameCount = film.host.edit.frameCount;
  if (range && range->last > frameCount)
    throw WrongUsage("--frames " + arguments.frames + ": the film has " + std::to_string(frameCount) + " frames");
  request.first = range ? range->first - 1 : 0;
  request.last = range ? range->last - 1 : frameCount - 1;
  keepMedia(film.host, request);
  watchForInterruption();
  {
    ProgressBar bar(arguments.quiet);
    exportFilm(film.host, request, [&](int done, int total) {
      bar.show(done, total);
      return !interrupted();
    });
  }
  film.warnings.report(film.host);
  return statusDone;
}

int info(const Arguments& arguments) {
  OpenFilm film(arguments);
  std::string answer = askEditor(film.host, zenlay::queryProject, nullptr);
  print(arguments.json ? answer + "\n" : describeProject(answer, askEditor(film.host, zenlay::queryEffects, nullptr)));
  return statusDone;
}

int effects(const Arguments& arguments) {
  Host host(hostOptions(arguments));
  const char* name = arguments.effect.empty() ? nullptr : arguments.effect.c_str();
  std::string answer = askEditor(host, zenlay::queryEffects, name);
  if (name && countEntries(answer) == 0) throw Failure("there is no effect \"" + arguments.effect + "\"");
  print(arguments.json ? answer + "\n" : describeEffects(answer, name != nullptr));
  return statusDone;
}

int convert(const Arguments& arguments) {
  projectKind(arguments.output);
  if (sameFile(arguments.input, arguments.output)) throw WrongUsage(arguments.output + " is the file to be converted");
  OpenFilm film(arguments);
  saveProject(film.host, arguments.output);
  film.warnings.report(film.host);
  return statusDone;
}

bool hasDisplay() {
  auto given = [](const char* name) {
    const char* value = getenv(name);
    return value && *value;
  };
  return given("DISPLAY") || given("WAYLAND_DISPLAY") || given("QT_QPA_PLATFORM");
}

/// The editor's windows are in a module of their own: nothing else waits for a desktop's libraries.
int openEditor(const Arguments& arguments) {
  std::string file = arguments.file.empty() ? "FILE" : arguments.file;
  if (!arguments.file.empty() && !platform::fileExists(file))
    throw WrongUsage("\"" + file + "\" is neither a command nor a file (cinora --help tells more)");
  if (!hasDisplay())
    throw Failure("there is no display to open the editor on; to make a film without one: cinora render " + file +
                  " -o film.mp4 (cinora --help tells more)");
  std::string here(platform::folderOf(platform::modulePathOf(reinterpret_cast<const void*>(&openEditor))));
  platform::Module* module = platform::loadModule(here + editorModule);
  if (!module) throw Failure(std::string("the editor cannot be loaded: ") + platform::loadError());
  auto run = reinterpret_cast<EditorEntry>(platform::moduleSymbol(module, editorEntry));
  if (!run) throw Failure(std::string(editorModule) + " is not an editor");
  return run({arguments.file, arguments.plugins});
}

struct Command {
  CLI::App* app;
  int (*run)(const Arguments&);
};

const CLI::Validator notEmpty([](std::string& text) { return text.empty() ? "must not be empty" : ""; }, "");

void addCommonOptions(CLI::App* app, Arguments& a) {
  app->add_option("--set", a.settings, "a setting of the plug-in for this run")
      ->type_name("KEY=VALUE")
      ->take_all()
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app->add_option("--threads", a.threads, "worker threads (default: one a processor)")
      ->check(CLI::Range(1, maxThreads));
  app->add_option("--plugins", a.plugins, "load the modules of this folder")->type_name("FOLDER")->check(notEmpty);
}

std::vector<Command> addCommands(CLI::App& app, Arguments& a) {
  constexpr char inputHelp[] = "project (.cnp), object file (.zlo) or backup (.zenlay_backup)";
  CLI::App* renderApp = app.add_subcommand("render", "render a film to a file");
  renderApp->add_option("INPUT", a.input, inputHelp)->required()->check(notEmpty);
  renderApp
      ->add_option("-o,--output", a.output,
                   "film (.mp4 .mkv .mov .webm .avi), picture or sequence (frame%05d.png), sound (.wav .flac), .raw")
      ->required()
      ->check(notEmpty)
      ->type_name("OUTPUT");
  renderApp->add_option("--frames", a.frames, "frames to render, from 1, both included")
      ->check(notEmpty)
      ->type_name("FIRST-LAST");
  renderApp->add_option("--codec", a.how.codec, "h264 h265 vp9 av1 ffv1 prores mpeg4 ... or an encoder of FFmpeg")
      ->check(notEmpty)
      ->type_name("NAME");
  renderApp
      ->add_option("--audio-codec", a.how.soundCodec, "aac opus vorbis flac pcm mp3 ..., or none for a silent film")
      ->type_name("NAME");
  renderApp->add_option("--quality", a.how.quality, "the encoder's own scale, lower is better (crf or qscale)")
      ->check(CLI::Range(0, 1000))
      ->type_name("N");
  renderApp->add_option("--preset", a.how.preset, "the encoder's preset: veryfast, slow ... or a number")
      ->check(notEmpty)
      ->type_name("NAME");
  renderApp->add_flag("--alpha", a.how.alpha, "keep transparency (vp9, ffv1, prores; png, tif, webp)");
  renderApp->add_flag("--quiet,-q", a.quiet, "no progress bar");
  CLI::App* infoApp = app.add_subcommand("info", "tell what a film holds");
  infoApp->add_option("INPUT", a.input, inputHelp)->required()->check(notEmpty);
  infoApp->add_flag("--json", a.json, "as JSON");
  CLI::App* effectsApp = app.add_subcommand("effects", "list the effects, or one with its tracks and checks");
  effectsApp->add_option("NAME", a.effect, "name of an effect")->check(notEmpty);
  effectsApp->add_flag("--json", a.json, "as JSON");
  CLI::App* convertApp = app.add_subcommand("convert", "write a film as another kind of file");
  convertApp->add_option("INPUT", a.input, inputHelp)->required()->check(notEmpty);
  convertApp->add_option("OUTPUT", a.output, "likewise")->required()->check(notEmpty);
  std::vector<Command> commands{{renderApp, render}, {infoApp, info}, {effectsApp, effects}, {convertApp, convert}};
  for (const Command& command : commands) addCommonOptions(command.app, a);
  return commands;
}

int complain(const std::string& what, int status) {
  say(what);
  return status;
}

/// Where the shell closed a standard stream no file of ours may take its place and get our messages.
void occupyStandardStreams() {
  int file;
  do file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  while (file >= 0 && file <= STDERR_FILENO);
  if (file >= 0) close(file);
}

}  // namespace

std::optional<FrameRange> parseFrameRange(const std::string& text) {
  FrameRange range;
  const char* end = text.data() + text.size();
  auto [behind, error] = std::from_chars(text.data(), end, range.first);
  range.last = range.first;
  if (error != std::errc{}) return {};
  if (behind != end) {
    if (*behind != '-') return {};
    auto [last, lastError] = std::from_chars(behind + 1, end, range.last);
    if (lastError != std::errc{} || last != end) return {};
  }
  return range.first >= 1 && range.last >= range.first ? std::optional(range) : std::nullopt;
}

int runCommandLine(int argc, const char* const* argv) {
  occupyStandardStreams();
  Arguments arguments;
  CLI::App app{"Renders, describes and converts films made with Zenlay."};
  app.name("cinora");
  app.set_version_flag("--version", version);
  std::vector<Command> commands = addCommands(app, arguments);
  app.add_option("FILE", arguments.file, "film to open in the editor");
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // --help, --version
      app.exit(error);
      return std::cout.flush() ? statusDone : complain(unwritableOutput, statusFailed);
    }
    return complain(std::string(error.what()) + " (cinora --help tells more)", statusWrongUsage);
  }
  makeWriteSignalsErrors();
  captureFfmpegLog();
  try {
    for (const Command& command : commands)
      if (command.app->parsed()) return command.run(arguments);
    return openEditor(arguments);
  } catch (const WrongUsage& error) {
    return complain(error.what(), statusWrongUsage);
  } catch (const std::bad_alloc&) {
    return complain("out of memory", statusFailed);
  } catch (const std::exception& error) {
    return complain(error.what(), statusFailed);
  }
}

}  // namespace cinora
