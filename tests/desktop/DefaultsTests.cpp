#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <limits>
#include <random>
#include <thread>

#include "TemporaryFolder.h"
#include "desktop/EventRunLoop.h"
#include "desktop/files/DefaultsFile.h"

namespace quibbits {
namespace {

struct Defaults : testing::Test {
    TemporaryFolder folder;
    std::filesystem::path file = folder / "quibbits/defaults.json";

    ino_t inode() const {
        struct stat info {};
        stat(file.c_str(), &info);
        return info.st_ino;
    }
};

TEST_F(Defaults, EveryTypeComesBackAsItWasStored) {
    const std::vector<DefaultsValue> values{true,
                                            std::int64_t{-7},
                                            2.5,
                                            3.0,
                                            "text with \"quotes\"\n",
                                            Date{1'700'000'000.25},
                                            std::vector<std::string>{"a", "", "ü"},
                                            std::vector<std::string>{}};
    {
        DefaultsFile defaults(file);
        for (std::size_t i = 0; i < values.size(); ++i) defaults.set(std::to_string(i), values[i]);
    }
    const DefaultsFile again(file);
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(again.stored(std::to_string(i)), values[i]) << i;
    }
}

TEST_F(Defaults, RegisteredValuesStandBehindStoredOnesAndAreNeverWritten) {
    DefaultsFile defaults(file);
    defaults.registerDefaults({{"a", std::int64_t{1}}, {"b", std::int64_t{2}}});
    defaults.set("a", std::int64_t{5});
    EXPECT_EQ(defaults.integer("a"), 5);
    EXPECT_EQ(defaults.integer("b"), 2);
    EXPECT_FALSE(defaults.stored("b"));
    defaults.remove("a");
    EXPECT_EQ(defaults.integer("a"), 1);
    defaults.flush();
    EXPECT_EQ(contents(file).find("\"b\""), std::string::npos);
}

TEST_F(Defaults, ChangesOfOneTurnAreReadAtOnceAndWrittenTogether) {
    EventRunLoop loop;
    DefaultsFile defaults(file, [&](Job job) { loop.post(std::move(job)); });
    for (int i = 0; i < 10; ++i) defaults.set("key" + std::to_string(i), std::int64_t{i});
    EXPECT_EQ(defaults.integer("key9"), 9);
    EXPECT_FALSE(std::filesystem::exists(file));
    loop.turn(0);
    const auto first = inode();
    EXPECT_EQ(DefaultsFile(file).integer("key9"), 9);

    defaults.set("key3", std::int64_t{3});
    defaults.remove("nothing");
    loop.turn(0);
    EXPECT_EQ(inode(), first) << "an unchanged value was written";
    defaults.set("key3", std::int64_t{4});
    loop.turn(0);
    EXPECT_NE(inode(), first);
}

TEST_F(Defaults, TwoWritersMergeByKeyAndSeeEachOtherAtTheNextRead) {
    DefaultsFile one(file);
    DefaultsFile two(file);
    one.set("mine", "1");
    two.set("yours", "2");
    one.set("both", "1");
    two.set("both", "2");
    EXPECT_TRUE(one.flush());
    EXPECT_TRUE(two.flush());
    EXPECT_EQ(one.string("yours"), "2");
    EXPECT_EQ(one.string("both"), "2");
    EXPECT_EQ(two.string("mine"), "1");
    two.remove("mine");
    two.flush();
    EXPECT_FALSE(one.stored("mine"));
}

TEST_F(Defaults, WhatSomebodyElseWroteInTheFileStays) {
    write(file, R"({"z": {"own": [1, {"deep": null}]}, "list": [1, 2], "a": 1})");
    {
        DefaultsFile defaults(file);
        EXPECT_FALSE(defaults.stored("z"));
        defaults.set("a", std::int64_t{2});
    }
    EXPECT_EQ(Json::parse(contents(file)).value->dump(),
              R"({"z":{"own":[1,{"deep":null}]},"list":[1,2],"a":2})");
}

TEST_F(Defaults, AFileThatDoesNotParseIsSetAsideAndNeverOverwritten) {
    write(file, "{\"a\": 1,");
    write(file.native() + ".broken-1", "older");
    {
        DefaultsFile defaults(file);
        EXPECT_FALSE(defaults.stored("a"));
        defaults.set("b", true);
    }
    EXPECT_EQ(contents(file.native() + ".broken-1"), "older");
    EXPECT_EQ(contents(file.native() + ".broken-2"), "{\"a\": 1,");
    EXPECT_TRUE(DefaultsFile(file).boolean("b"));

    write(file, "[1]");
    DefaultsFile(file).set("c", true);
    EXPECT_EQ(contents(file.native() + ".broken-3"), "[1]");
}

TEST_F(Defaults, ANumberBeyondAllBoundsCostsNothingButItself) {
    write(file, R"({"pet.energy": 1e999, "text": "no \"number 1e999", "tiny": 1e-999,)"
                R"( "list": ["-1e999"], "pet.exp": -1E+400, "pet.stage": "sparrel"})");
    DefaultsFile defaults(file);
    EXPECT_FALSE(defaults.stored("pet.energy"));
    EXPECT_FALSE(defaults.stored("pet.exp"));
    EXPECT_EQ(defaults.string("pet.stage"), "sparrel");
    EXPECT_EQ(defaults.string("text"), "no \"number 1e999");
    EXPECT_EQ(defaults.stored("list"), DefaultsValue(std::vector<std::string>{"-1e999"}));
    EXPECT_EQ(defaults.real("tiny"), 0);
    defaults.set("pet.energy", 0.5);
    EXPECT_TRUE(defaults.flush());
    EXPECT_FALSE(std::filesystem::exists(file.native() + ".broken-1"));
    EXPECT_EQ(DefaultsFile(file).real("pet.energy"), 0.5);
    EXPECT_EQ(DefaultsFile(file).string("pet.stage"), "sparrel");
}

TEST_F(Defaults, AMistakeInAnEditorWhileTheProgramRunsCostsNothingButTheEdit) {
    DefaultsFile defaults(file);
    defaults.set("level", std::int64_t{40});
    defaults.flush();
    write(file, "{\"level\": 41");
    EXPECT_EQ(defaults.integer("level"), 40);
    defaults.set("other", true);
    defaults.flush();
    EXPECT_EQ(DefaultsFile(file).integer("level"), 40);
    EXPECT_EQ(contents(file.native() + ".broken-1"), "{\"level\": 41");
}

TEST_F(Defaults, ALinkToTheRealFileStaysALink) {
    write(folder / "dotfiles/real.json", "{\"a\": 1}");
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::create_symlink(folder / "dotfiles/real.json", file);
    DefaultsFile(file).set("b", std::int64_t{2});
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(DefaultsFile(folder / "dotfiles/real.json").integer("b"), 2);
}

TEST_F(Defaults, ANumberThatIsNotFiniteHoldsInMemoryOnly) {
    DefaultsFile defaults(file);
    defaults.set("x", std::numeric_limits<double>::infinity());
    defaults.set("date", Date{std::numeric_limits<double>::infinity()});
    defaults.set("y", 1.0);
    defaults.flush();
    EXPECT_TRUE(std::isinf(defaults.real("x")));
    EXPECT_TRUE(defaults.onlyDate("date"));
    EXPECT_TRUE(DefaultsFile(file).stored("date") == std::nullopt);
    EXPECT_EQ(DefaultsFile(file).all().size(), 1u);
}

TEST_F(Defaults, WhileAnotherHoldsTheLockAValueWaitsInMemory) {
    DefaultsFile defaults(file);
    defaults.set("a", std::int64_t{1});
    defaults.flush();
    FileDescriptor lock(open((file.native() + ".lock").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(lock.get(), LOCK_EX), 0);
    defaults.set("a", std::int64_t{2});
    EXPECT_FALSE(defaults.flush());
    EXPECT_FALSE(defaults.failure().empty());
    EXPECT_EQ(defaults.integer("a"), 2);
    EXPECT_EQ(DefaultsFile(file).integer("a"), 1);
    lock = FileDescriptor();
    EXPECT_TRUE(defaults.flush());
    EXPECT_EQ(DefaultsFile(file).integer("a"), 2);
}

/// Runs the body in a child process and gives its exit status.
template <typename Body>
int inChild(Body body) {
    const pid_t child = fork();
    if (child == 0) _exit(body());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Root may write anywhere, so the child becomes somebody else.
bool becomeNobody() {
    return getuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
}

TEST_F(Defaults, AFolderThatMayNotBeWrittenLosesNothing) {
    DefaultsFile(file).set("a", std::int64_t{1});
    chmod(folder.path().c_str(), 0755);
    chmod(file.parent_path().c_str(), 0555);
    chmod(file.c_str(), 0444);
    const int status = inChild([this] {
        if (!becomeNobody()) return 9;
        DefaultsFile defaults(file);
        if (defaults.integer("a") != 1) return 1;
        defaults.set("a", std::int64_t{2});
        if (defaults.flush()) return 2;
        return defaults.integer("a") == 2 ? 0 : 3;
    });
    EXPECT_EQ(status, 0);
    chmod(file.parent_path().c_str(), 0755);
    EXPECT_EQ(DefaultsFile(file).integer("a"), 1);
}

TEST_F(Defaults, AFileThatMayNotBeReadIsLeftAlone) {
    write(file, "{\"a\": 1}");
    chmod(folder.path().c_str(), 0755);
    chmod(file.parent_path().c_str(), 0777);
    chmod(file.c_str(), 0200);
    const int status = inChild([this] {
        if (!becomeNobody()) return 9;
        DefaultsFile defaults(file);
        defaults.set("b", std::int64_t{2});
        if (defaults.flush()) return 1;
        return defaults.integer("b") == 2 ? 0 : 2;
    });
    EXPECT_EQ(status, 0);
    chmod(file.c_str(), 0600);
    EXPECT_EQ(contents(file), "{\"a\": 1}");
}

TEST_F(Defaults, AFullDiskLosesNothingAndIsTriedAgain) {
    DefaultsFile(file).set("a", std::int64_t{1});
    const int status = inChild([this] {
        signal(SIGXFSZ, SIG_IGN);
        DefaultsFile defaults(file);
        const rlimit tiny{10, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &tiny);
        defaults.set("a", std::int64_t{2});
        if (defaults.flush()) return 1;
        if (DefaultsFile(file).integer("a") != 1) return 2;
        if (std::filesystem::exists(file.native() + ".new")) return 3;
        const rlimit free{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &free);
        return defaults.flush() ? 0 : 4;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(DefaultsFile(file).integer("a"), 2);
}

// A child saves ten keys of the same number again and again and reports each number that it has
// flushed; it is killed at any moment.
TEST_F(Defaults, AKillAtAnyMomentLosesNothingThatWasFlushed) {
    std::mt19937 random(7);
    std::int64_t floor = 0;
    unsigned longest = 25'000;  // microseconds; a busy machine may give the child no turn in those
    for (int round = 0; round < 40; ++round) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        const pid_t child = fork();
        if (child == 0) {
            DefaultsFile defaults(file);
            for (std::int64_t n = floor + 1;; ++n) {
                for (int key = 0; key < 10; ++key) {
                    defaults.set("key" + std::to_string(key), n);
                }
                if (defaults.flush() && ::write(ends[1], &n, sizeof n) != sizeof n) _exit(1);
            }
        }
        close(ends[1]);
        const FileDescriptor reports(ends[0]);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % longest));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        std::int64_t flushed = floor;
        while (read(reports.get(), &flushed, sizeof flushed) == sizeof flushed) {
        }
        const auto text = contents(file);
        ASSERT_TRUE(text.empty() || Json::parse(text)) << text;
        DefaultsFile defaults(file);
        const auto saved = defaults.integer("key0");
        EXPECT_GE(saved, flushed);
        for (int key = 1; key < 10; ++key) {
            EXPECT_EQ(defaults.integer("key" + std::to_string(key)), saved) << "a torn save";
        }
        if (saved == floor) longest = std::min(longest * 2, 2'000'000u);
        floor = saved;
    }
    EXPECT_GT(floor, 5) << "the child hardly wrote anything";
}

TEST_F(Defaults, ManyWritersAtOnceUndoNothing) {
    std::vector<pid_t> children;
    for (int writer = 0; writer < 4; ++writer) {
        const pid_t child = fork();
        if (child == 0) {
            DefaultsFile defaults(file);
            for (std::int64_t n = 1; n <= 30; ++n) {
                defaults.set("writer" + std::to_string(writer), n);
                while (!defaults.flush()) {
                }
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) waitpid(child, nullptr, 0);
    DefaultsFile defaults(file);
    for (int writer = 0; writer < 4; ++writer) {
        EXPECT_EQ(defaults.integer("writer" + std::to_string(writer)), 30);
    }
}

// The program quibbits-defaults.

struct Answer {
    int status = -1;
    std::string out;
    bool operator==(const Answer&) const = default;
};

struct DefaultsTool : Defaults {
    Answer tool(const std::string& words) {
        const std::string command = "env -u DISPLAY XDG_CONFIG_HOME='" + folder.path().native() +
                                    "' " QUIBBITS_BIN_DIR "/quibbits-defaults " + words + " 2>&1";
        Answer answer;
        FILE* pipe = popen(command.c_str(), "r");
        std::array<char, 256> part;
        while (fgets(part.data(), part.size(), pipe)) answer.out += part.data();
        answer.status = WEXITSTATUS(pclose(pipe));
        return answer;
    }
};

TEST_F(DefaultsTool, AValueKeepsTheTypeThatItIsWrittenWith) {
    struct Case {
        const char* words;
        DefaultsValue value;
    };
    for (const auto& [words, value] : {
             Case{"true", true},
             Case{"-12", std::int64_t{-12}},
             Case{"1.5", 1.5},
             Case{"fly", std::string("fly")},
             Case{"-string 12", std::string("12")},
             Case{"-string -string", std::string("-string")},
             Case{"-bool no", false},
             Case{"-int 7", std::int64_t{7}},
             Case{"-float 7", 7.0},
             Case{"-date 1970-01-02T00:00:00Z", Date{86400}},
             Case{"-date 1970-01-02T02:30:00+02:30", Date{86400}},
             Case{"-date 12.5", Date{12.5}},
             Case{"-array a 'b c'", std::vector<std::string>{"a", "b c"}},
             Case{"-array", std::vector<std::string>{}},
         }) {
        EXPECT_EQ(tool(std::string("write Key ") + words), (Answer{0, ""})) << words;
        EXPECT_EQ(DefaultsFile(file).stored("Key"), value) << words;
    }
}

TEST_F(DefaultsTool, ItReadsListsAndDeletes) {
    write(file, R"({"b": "two", "a": [ "x" ], "d": {"date": 0}, "n": 2.0})");
    EXPECT_EQ(tool("read b"), (Answer{0, "two\n"}));
    EXPECT_EQ(tool("read"),
              (Answer{0, "b = two\na = [\"x\"]\nd = 1970-01-01T00:00:00Z\nn = 2.0\n"}));
    EXPECT_EQ(tool("list"), (Answer{0, "b\tstring\na\tarray\nd\tdate\nn\tfloat\n"}));
    EXPECT_EQ(tool("delete b").status, 0);
    EXPECT_EQ(tool("read b").status, 1);
    EXPECT_EQ(tool("delete b").status, 1);
    EXPECT_EQ(tool("--help").status, 0);
}

TEST_F(DefaultsTool, AMistakeIsNamedAndChangesNothing) {
    for (const char* words : {"", "frobnicate", "read a b", "write a", "write a -int x",
                              "write a -int", "write a -date soon", "write a 1 2", "delete"}) {
        const auto answer = tool(words);
        EXPECT_EQ(answer.status, 2) << words;
        EXPECT_NE(answer.out.find("quibbits-defaults: "), std::string::npos) << words;
    }
    EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
}  // namespace quibbits
