// quibbits-sim: the real program on a simulated computer, in virtual time.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "desktop/files/DiskResources.h"
#include "raster/Painter.h"
#include "simulator/Film.h"
#include "simulator/Player.h"
#include "terminal/ProgressBar.h"

namespace {

using namespace quibbits;

struct Arguments {
    std::string scenario;
    std::string trace;
    std::string film;
    std::string sheets;
    std::optional<PixelRect> area;
    int framesPerSecond = 20;
    double lasting = 0;
};

constexpr int failed = 1;
constexpr int misused = 2;

void printHelp() {
    std::cout
        << "Usage: quibbits-sim [options] SCENARIO\n"
           "\n"
           "Runs Quibbits on a simulated computer in virtual time. SCENARIO is a file, or - for "
           "the\n"
           "standard input.\n"
           "\n"
           "  --trace FILE      writes what happens, one JSON object a line; - is the standard "
           "output\n"
           "  --film TARGET     a folder for numbered PNG frames, or a .png for one animated "
           "picture\n"
           "  --fps N           frames a second of the film, 1 to 60; 20 unless told\n"
           "  --area X,Y,W,H    the part of the screen to film, in pixels from the top left\n"
           "  --for SECONDS     plays on for so long after the last event\n"
           "  --sheets DIR      where the creatures' pictures are\n"
           "  --help            this text\n"
           "\n"
           "A scenario has one JSON object a line. Every line has \"at\", the seconds since the\n"
           "beginning, never less than the line before, and \"event\", one of those below, with "
           "that\n"
           "event's fields. Blank lines and lines that begin with # are passed over. What stands "
           "at\n"
           "time 0 is how the program finds the computer; it starts before the first later event.\n"
           "Coordinates are points with y upwards from the screen's lower left corner. The screen "
           "is\n"
           "1440 by 900 unless told.\n\n";
    for (const EventSpec& spec : eventSpecs()) {
        std::cout << "  " << spec.kind << "\n      " << spec.help << "\n";
        for (const FieldSpec& field : spec.fields) {
            std::cout << "      \"" << field.name << "\": " << describe(field.type)
                      << (field.required ? "" : " (optional)");
            if (!field.help.empty()) std::cout << "; " << field.help;
            std::cout << "\n";
        }
    }
    std::cout
        << "\n"
           "The trace has a line for each of: start, quit; decision (the choice, the needs, and "
           "every\n"
           "option with its score, its base and the reasons that multiply to the score); bubble "
           "(face,\n"
           "speaker, caption, seconds); notification; withdrawn (a notification); saved and\n"
           "removed (a key of the defaults);\n"
           "trash (a path, and whether it was moved); drop (whether it was taken); deleteKey "
           "(whether\n"
           "it was held, so that no other program got it); dial (whether it is open); menu (its "
           "lines);\n"
           "choose (whether there was such a line); position. Each has\n"
           "\"t\", the seconds since the beginning, and \"local\", the time on the wall.\n";
}

std::optional<double> number(const std::string& text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<PixelRect> area(const std::string& text) {
    PixelRect rect;
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%d,%d,%d,%d%c", &rect.x, &rect.y, &rect.width,
                                 &rect.height, &rest);
    if (read != 4 || rect.isEmpty()) return std::nullopt;
    return rect;
}

/// The arguments, or what is wrong with them.
std::variant<Arguments, std::string> parse(const std::vector<std::string>& words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "-" || !word.starts_with("-")) {
            if (!arguments.scenario.empty()) return "only one scenario can be played";
            arguments.scenario = word;
            continue;
        }
        if (i + 1 == words.size()) return "unknown option or missing value: " + word;
        const std::string& value = words[++i];
        if (word == "--trace") {
            arguments.trace = value;
        } else if (word == "--film") {
            arguments.film = value;
        } else if (word == "--sheets") {
            arguments.sheets = value;
        } else if (word == "--area") {
            arguments.area = area(value);
            if (!arguments.area) return "--area needs X,Y,W,H";
        } else if (word == "--fps") {
            const double rate = number(value).value_or(0);
            if (rate < 1 || rate > 60) return "--fps needs a number from 1 to 60";
            arguments.framesPerSecond = static_cast<int>(rate);
        } else if (word == "--for") {
            arguments.lasting = number(value).value_or(-1);
            if (arguments.lasting < 0) return "--for needs seconds";
        } else {
            return "unknown option: " + word;
        }
    }
    if (arguments.scenario.empty()) return "which scenario? See quibbits-sim --help";
    return arguments;
}

std::optional<std::string> readAll(const std::string& name) {
    if (name == "-") {
        return std::string(std::istreambuf_iterator<char>(std::cin), {});
    }
    std::ifstream in(name, std::ios::binary);
    if (!in) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(in), {});
}

int play(const Arguments& arguments, const Scenario& scenario) {
    std::ofstream traceFile;
    std::ostream* trace = nullptr;
    if (arguments.trace == "-") {
        trace = &std::cout;
    } else if (!arguments.trace.empty()) {
        traceFile.open(arguments.trace);
        trace = &traceFile;
    }
    std::optional<Film> film;
    if (!arguments.film.empty()) {
        film.emplace(arguments.film, arguments.framesPerSecond, arguments.area);
    }
    std::vector<std::filesystem::path> folders{DiskResources::userSheets()};
    folders.push_back(arguments.sheets.empty() ? DiskResources::ownSheets()
                                               : std::filesystem::path(arguments.sheets));
    DiskResources resources(std::move(folders));
    TextRuler text;
    ProgressBar bar("Filming");

    Player::Options options{.trace = trace, .lasting = arguments.lasting};
    if (film) {
        options.frameEvery = 1.0 / arguments.framesPerSecond;
        const double end =
            std::max((scenario.empty() ? 0 : scenario.back().at) + arguments.lasting, 1.0);
        options.onFrame = [&, end](SimulatedComputer& computer) {
            bar.show(computer.runLoop.now() / end);
            film->shoot(computer);
        };
    }
    std::vector<std::string> disappointments;
    {
        Player player(scenario, options, resources, text);
        player.play();
        disappointments = player.disappointments();
    }  // it ends with the program's last words
    for (const std::string& each : disappointments) {
        std::cerr << arguments.scenario << ": " << each << "\n";
    }
    if (trace) trace->flush();
    if (trace && !trace->good()) {
        std::cerr << "quibbits-sim: the trace could not be written\n";
        return failed;
    }
    if (film && !film->finish()) {
        std::cerr << "quibbits-sim: the film could not be written\n";
        return failed;
    }
    return disappointments.empty() ? 0 : failed;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (std::ranges::find(words, "--help") != words.end()) {
        printHelp();
        return 0;
    }
    const auto arguments = parse(words);
    if (const auto* wrong = std::get_if<std::string>(&arguments)) {
        std::cerr << "quibbits-sim: " << *wrong << "\n";
        return misused;
    }
    const auto& given = std::get<Arguments>(arguments);
    const auto text = readAll(given.scenario);
    if (!text) {
        std::cerr << "quibbits-sim: cannot read " << given.scenario << "\n";
        return failed;
    }
    const auto scenario = parseScenario(*text);
    if (const auto* error = std::get_if<ScenarioError>(&scenario)) {
        std::cerr << given.scenario << ":" << error->line << ": " << error->reason << "\n";
        return misused;
    }
    return play(given, std::get<Scenario>(scenario));
}
