// Scripts and command lines as real processes.
#include "library/utilities/ShellCommands.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <new>
#include <thread>

#include "platform/Services.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Children.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using testing::eventually;
using testing::hasNoChildren;
using testing::inChild;
using testing::readFile;
using testing::ScratchFolder;
using Lines = std::vector<std::string>;
using Text = std::optional<std::u16string>;

constexpr double kLong = 60;

bool isThere(pid_t process) {
  return std::filesystem::exists("/proc/" + std::to_string(process) + "/exe");
}

class Commands : public ::testing::Test {
 protected:
  Commands() { folders.homeFolder = home; }
  ~Commands() override {
    for (const std::string& path : outputFiles()) std::filesystem::remove(path);
  }

  platform::Services set() {
    platform::Services set = platform::services();
    set.folders = &folders;
    set.log = &log;
    return set;
  }

  // A script of the shell that may be run.
  [[nodiscard]] std::string script(const std::string& lines, const std::string& name = "script") const {
    return executable("#!/bin/sh\n" + lines + "\n", name);
  }
  [[nodiscard]] std::string executable(const std::string& text, const std::string& name = "script") const {
    const std::string path = folder.file(name, text);
    ::chmod(path.c_str(), 0755);
    return path;
  }

  static Text run(const std::string& path, const std::optional<std::vector<std::string>>& parameters = {},
                  double timeout = kLong) {
    return runShellScript({.path = path, .parameters = parameters, .timeout = timeout});
  }

  // Files of this process that scripts write into.
  static Lines outputFiles() {
    Lines paths;
    const std::string start = "script-output-" + std::to_string(::getpid()) + "-";
    for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
      if (entry.path().filename().string().starts_with(start)) paths.push_back(entry.path());
    }
    return paths;
  }

  ScratchFolder folder;
  std::string home = folder.folder("home");
  platform::testing::FixedFolders folders;
  platform::testing::RecordingLog log;
  platform::ScopedServices services{set()};
};

class Scripts : public Commands {};

TEST_F(Scripts, AnswerWhatTheyWriteInItsOrder) {
  EXPECT_EQ(run(script("echo one; echo two >&2; echo three; echo four >&2")), u"one\ntwo\nthree\nfour\n");
  EXPECT_EQ(log.lines(), Lines{});
  EXPECT_TRUE(hasNoChildren());
}

TEST_F(Scripts, MayWriteNothingOrNoEndOfALine) {
  EXPECT_EQ(run(script("")), u"");
  EXPECT_EQ(run(script("printf 'no end'")), u"no end");
  EXPECT_EQ(run(script("printf 'a\\0b'")), (std::u16string{u'a', u'\0', u'b'}));
  EXPECT_EQ(run(script("printf '\\303\\244\\360\\237\\230\\200'")), u"\u00E4\U0001F600");
}

TEST_F(Scripts, AnswerWhatTheyWroteWhateverTheirStatus) {
  EXPECT_EQ(run(script("echo written; exit 3")), u"written\n");
  EXPECT_EQ(run(script("echo written; kill -KILL $$")), u"written\n");
}

TEST_F(Scripts, GetTheirParametersAsTheyAre) {
  const std::string path = script("echo $#; printf '%s|' \"$@\"");
  EXPECT_EQ(run(path), u"0\n|");
  EXPECT_EQ(run(path, Lines{}), u"0\n|");
  EXPECT_EQ(run(path, Lines{"a b", "$(id)", "", "-x"}), u"4\na b|$(id)||-x|");
}

TEST_F(Scripts, RunInTheHomeFolderWithNothingToRead) {
  const std::string text = script("pwd; cat; readlink /proc/self/fd/0");
  const std::string expected = home + "\n/dev/null\n";
  EXPECT_EQ(run(text), std::u16string(expected.begin(), expected.end()));
}

TEST_F(Scripts, AreFoundInTheHomeFolder) {
  std::filesystem::rename(script("echo at home"), home + "/script");
  EXPECT_EQ(run("~/script"), u"at home\n");
}

TEST_F(Scripts, AreFoundInTheHomeFolderOfAnotherUser) {
  const passwd* other = ::getpwnam("daemon");
  ASSERT_NE(other, nullptr);
  const std::string there = std::string(other->pw_dir) + "/no-such-script";
  const std::string start = "script no-such-script failed: could not start ";
  const auto failed = [](const std::string& path) {
    const Text text = run(path);
    return text ? std::string(text->begin(), text->end()) : "none";
  };
  EXPECT_EQ(failed("~daemon/no-such-script"), start + there + ": No such file or directory");
  EXPECT_EQ(failed("~no such user/no-such-script"),
            start + "~no such user/no-such-script: No such file or directory");
}

TEST_F(Scripts, WriteIntoAFileThatIsGoneAfterwards) {
  const Text path = run(script("readlink /proc/self/fd/1"));
  ASSERT_TRUE(path);
  const std::string start = "/tmp/script-output-" + std::to_string(::getpid()) + "-";
  EXPECT_TRUE(path->starts_with(std::u16string(start.begin(), start.end())));
  EXPECT_EQ(outputFiles(), Lines{});
}

TEST_F(Scripts, ThatAreNoTextHaveNoResult) {
  EXPECT_EQ(run(script("printf 'a\\377b'")), std::nullopt);
  EXPECT_EQ(log.lines(), Lines{"error getting result: not UTF-8"});
  EXPECT_EQ(outputFiles(), Lines{});
}

TEST_F(Scripts, MayWriteALot) {
  constexpr std::size_t kLength = (64UL << 20) + 1;
  const Text text = run(script("head -c " + std::to_string(kLength) + " /dev/zero | tr '\\0' a"));
  ASSERT_TRUE(text);
  EXPECT_EQ(text->size(), kLength);
  EXPECT_EQ(text->find_first_not_of(u'a'), std::u16string::npos);
}

TEST_F(Scripts, ThatTakeTooLongAreEndedAndAnswerWhatTheyHaveWritten) {
  const auto start = std::chrono::steady_clock::now();
  const Text text = runShellScript({.path = script("echo $$; sleep 60; echo late", "slow"),
                                    .parameters = Lines{"a"},
                                    .parametersText = "(a)",
                                    .timeout = 0.5});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(log.lines(), Lines{"script timeout: slow (a)"});
  ASSERT_TRUE(text && !text->empty() && text->find(u"late") == std::u16string::npos);
  EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
  EXPECT_EQ(outputFiles(), Lines{});
}

TEST_F(Scripts, WithoutParametersAreLoggedWithoutThem) {
  static_cast<void>(run(script("sleep 60", "slow"), {}, 0.05));
  EXPECT_EQ(log.lines(), Lines{"script timeout: slow (null)"});
}

TEST_F(Scripts, WithoutTimeAreEndedAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(run(script("sleep 60; echo late", "slow"), {}, 0), u"");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(log.lines(), Lines{"script timeout: slow (null)"});
}

TEST_F(Scripts, AreLookedAfterEveryMillisecondUntilMoreThanTheirTimeHasPassed) {
  platform::testing::ManualClock clock;
  platform::Services withClock = platform::services();
  withClock.clock = &clock;
  const platform::ScopedServices scope(withClock);
  static_cast<void>(run(script("sleep 60", "slow"), {}, 0.0105));
  EXPECT_EQ(clock.sleeps(), std::vector<double>(11, 0.001));
  EXPECT_EQ(log.lines(), Lines{"script timeout: slow (null)"});
}

TEST_F(Scripts, HaveAllOfTheirTime) {
  platform::testing::ManualClock clock;
  platform::Services withClock = platform::services();
  withClock.clock = &clock;
  const platform::ScopedServices scope(withClock);
  static_cast<void>(run(script("sleep 60", "slow"), {}, 0));
  // None has passed when it is first looked after; only more than that ends it.
  EXPECT_EQ(clock.sleeps().size(), 1U);
}

TEST_F(Scripts, AreMeasuredWithTheTimeInSinglePrecision) {
  platform::testing::ManualClock clock;
  platform::Services withClock = platform::services();
  withClock.clock = &clock;
  const platform::ScopedServices scope(withClock);
  // In single precision 0.001 seconds are a little more than 0.001.
  static_cast<void>(run(script("sleep 60", "slow"), {}, 0.001));
  EXPECT_EQ(clock.sleeps().size(), 1U);
}

TEST_F(Scripts, ThatWillNotEndAreNotWaitedFor) {
  const auto start = std::chrono::steady_clock::now();
  const Text text = run(script("trap '' TERM; echo $$; while :; do sleep 0.1; done"), {}, 0.3);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  ASSERT_TRUE(text && !text->empty());
  const pid_t process = std::stoi(std::string(text->begin(), text->end()));
  EXPECT_TRUE(isThere(process));
  ::kill(-process, SIGKILL);
  EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
}

// Whoever is not ended could write for ever. One attempt of several may be so slow that it grows too soon.
TEST_F(Scripts, AnswerWhatWasThereWhenTheirTimeWasUp) {
  const std::string path = script(
      "trap 'truncate -s 128M /dev/stdout; exit' TERM\n"
      "truncate -s 64M /dev/stdout; while :; do sleep 0.01; done");
  bool asItWas = false;
  for (int attempt = 0; attempt < 10 && !asItWas; ++attempt) {
    const Text text = run(path, {}, 0.3);
    ASSERT_TRUE(text);
    asItWas = text->size() == 64UL << 20;
    EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
  }
  EXPECT_TRUE(asItWas);
}

TEST_F(Scripts, ThatWriteForEverAreNotReadForEver) {
  const auto start = std::chrono::steady_clock::now();
  const Text text = run(script("trap '' TERM; ulimit -f 4000000; echo $$; exec yes"), {}, 0.2);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  ASSERT_TRUE(text && !text->empty());
  const std::u16string_view line = std::u16string_view(*text).substr(0, text->find(u'\n'));
  ::kill(-std::stoi(std::string(line.begin(), line.end())), SIGKILL);
  EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
}

TEST_F(Scripts, AreEndedWithWhatTheyHaveStarted) {
  const Text text = run(script("sleep 60 & echo $!; wait"), {}, 0.3);
  ASSERT_TRUE(text && !text->empty());
  const pid_t process = std::stoi(std::string(text->begin(), text->end()));
  EXPECT_TRUE(eventually([&] { return !isThere(process); }));
}

TEST_F(Scripts, MayLeaveSomethingThatWritesOn) {
  const auto start = std::chrono::steady_clock::now();
  const Text text = run(script("sleep 30 & echo $!"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  ASSERT_TRUE(text && !text->empty());
  const pid_t process = std::stoi(std::string(text->begin(), text->end()));
  EXPECT_TRUE(isThere(process));
  ::kill(process, SIGKILL);
  EXPECT_TRUE(hasNoChildren());
  EXPECT_EQ(outputFiles(), Lines{});
}

TEST_F(Scripts, ThatCannotBeStartedSayThatTheyHaveFailed) {
  const auto failed = [](const std::string& path) {
    const Text text = run(path);
    return text ? std::string(text->begin(), text->end()) : "none";
  };
  const std::string missing = folder / "missing";
  EXPECT_EQ(failed(missing),
            "script missing failed: could not start " + missing + ": No such file or directory");
  const std::string plain = folder.file("plain", "#!/bin/sh\n");
  EXPECT_EQ(failed(plain), "script plain failed: could not start " + plain + ": Permission denied");
  const std::string bare = executable("echo without an interpreter\n", "bare");
  EXPECT_EQ(failed(bare), "script bare failed: could not start " + bare + ": Exec format error");
  const std::string directory = folder.folder("folder");
  EXPECT_EQ(failed(directory), "script folder failed: could not start " + directory + ": Permission denied");
  EXPECT_EQ(failed(""), "script  failed: could not start : No such file or directory");
  EXPECT_EQ(failed("~/no"), "script no failed: could not start " + home + "/no: No such file or directory");
  EXPECT_EQ(log.lines(), Lines{});
  EXPECT_TRUE(hasNoChildren());
  EXPECT_EQ(outputFiles().size(), 6U) << "their files stay";
}

TEST_F(Scripts, NeedAHomeFolder) {
  folders.homeFolder = folder / "missing";
  const Text text = run(script("echo"));
  EXPECT_TRUE(text && text->starts_with(u"script script failed: ")) << "and nothing else to work in";
}

TEST_F(Scripts, ThatCannotBeStartedAsWantedAreNot) {
  EXPECT_EQ(runShellScript({.path = script("echo run"), .fault = "not so", .timeout = kLong}),
            u"script script failed: not so");
}

TEST_F(Scripts, FailWhereAServiceRaises) {
  class NoFolders final : public platform::StandardFolders {
   public:
    std::string home() override { throw std::bad_alloc(); }
    std::optional<std::string> localApplications() override { return {}; }
    std::optional<std::string> userApplications() override { return {}; }
    std::string displayName(const std::string&) override { return {}; }
  };
  NoFolders none;
  platform::Services withNone = platform::services();
  withNone.folders = &none;
  const platform::ScopedServices scope(withNone);
  const Text text = run("/folder/name");
  EXPECT_TRUE(text && text->starts_with(u"script name failed: ") && text->size() > 20);
}

TEST_F(Scripts, MayLieAsDeepAsPathsReach) {
  // With the zero at the end, the longest path that the system takes has 4,096 bytes.
  constexpr std::size_t kLongest = 4095;
  std::string place = folder.path();
  while (kLongest - place.size() > 220) {
    place += "/" + std::string(200, 'd');
    ASSERT_EQ(::mkdir(place.c_str(), 0700), 0);
  }
  const std::string name(kLongest - place.size() - 1, 's');
  const std::string path = place + "/" + name;
  ASSERT_EQ(path.size(), kLongest);
  {
    const posix::FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT, 0700));
    ASSERT_TRUE(file);
    constexpr std::string_view kText = "#!/bin/sh\necho deep\n";
    ASSERT_EQ(::write(file.get(), kText.data(), kText.size()), static_cast<ssize_t>(kText.size()));
  }
  EXPECT_EQ(run(path), u"deep\n");
  const Text text = run(path + "s");
  ASSERT_TRUE(text);
  EXPECT_TRUE(text->ends_with(u": File name too long"));
}

TEST_F(Scripts, MayRunAtTheSameTime) {
  const std::string path = script("sleep 0.05; echo $1");
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&, number] {
      const std::string word = std::to_string(number);
      if (run(path, Lines{word}) == std::u16string(word.begin(), word.end()) + u"\n") ++right;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
}

TEST_F(Scripts, RunInAProgramThatDoesNotWantToHearOfItsChildren) {
  const std::string path = script("echo written");
  const int status = inChild([&] {
    ::signal(SIGCHLD, SIG_IGN);
    return run(path) == u"written\n" ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

class CommandLines : public Commands {
 protected:
  static Text outputOf(const std::string& line) {
    const CommandResult result = runShellCommand(line);
    EXPECT_FALSE(result.error);
    return result.output;
  }
};

TEST_F(CommandLines, AnswerTheirStandardOutputAlone) {
  EXPECT_EQ(outputOf("echo $((6 * 7)); echo error >&2; exit 3"), u"42\n");
  EXPECT_EQ(outputOf(""), u"");
  EXPECT_EQ(outputOf("no-such-command 2>/dev/null"), u"");
  EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
}

TEST_F(CommandLines, ThatAreNoTextHaveNoResult) {
  EXPECT_EQ(outputOf("printf '\\377'"), std::nullopt);
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(CommandLines, MayWriteALot) {
  const Text text = outputOf("head -c 67108865 /dev/zero | tr '\\0' a");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->size(), 67108865U);
}

TEST_F(CommandLines, AreReadUntilEverybodyHasClosedTheirOutput) {
  EXPECT_EQ(outputOf("(sleep 0.3; echo late) & echo early"), u"early\nlate\n");
}

TEST_F(CommandLines, AreNotWaitedForOnceTheyHaveClosedTheirOutput) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(outputOf("echo early; exec >&-; sleep 2"), u"early\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1800));
  EXPECT_FALSE(hasNoChildren());
  EXPECT_TRUE(eventually([] { return hasNoChildren(); }));
}

TEST_F(CommandLines, ReadWhatTheProgramReadsAndWriteErrorsWhereItDoes) {
  const std::string input = folder.file("input", "to be read");
  const std::string errors = folder / "errors";
  const int status = inChild([&] {
    const posix::FileDescriptor from(::open(input.c_str(), O_RDONLY));
    const posix::FileDescriptor to(::open(errors.c_str(), O_WRONLY | O_CREAT, 0600));
    ::dup2(from.get(), 0);
    ::dup2(to.get(), 2);
    return outputOf("cat; echo error >&2") == u"to be read" ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(readFile(errors), "error\n");
}

TEST_F(CommandLines, NeedAPipe) {
  const int status = inChild([] {
    testing::failSystemCall(SYS_pipe, EMFILE);
    testing::failSystemCall(SYS_pipe2, EMFILE);
    return runShellCommand("true").error.value() == EMFILE ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace kr
