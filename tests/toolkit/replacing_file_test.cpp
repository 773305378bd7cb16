#include "toolkit/replacing_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "support/in_process.h"
#include "support/memory_sink.h"
#include "support/temp_folder.h"

namespace korvel::toolkit {
namespace {

namespace fs = std::filesystem;

std::size_t FilesIn(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(FileSink, CountsWhatWasAppendedAndTellsAFullDisk) {
  test::MemorySink sink(2 * FileSink::kBufferBytes);
  const std::string block(FileSink::kBufferBytes - 1, 'x');
  sink.Append(block);
  sink.Append(block);
  EXPECT_EQ(sink.Position(), 2 * block.size());
  sink.Append("123");
  try {
    sink.Finish();
    FAIL() << "the disk was full";
  } catch (const FileError& error) {
    EXPECT_EQ(error.Number(), ENOSPC);
    EXPECT_STREQ(error.what(), "Não foi possível escrever \"memória\": não há espaço em disco");
  }
  EXPECT_FALSE(sink.complete);
}

/// A folder with a file of an earlier run.
class Replacing : public testing::Test {
 protected:
  Replacing() { test::WriteFile(target, "earlier"); }

  void ExpectTheEarlierOneAlone() const {
    EXPECT_EQ(test::ReadFile(target), "earlier");
    EXPECT_EQ(FilesIn(folder.Path()), 1u);
  }

  const test::TempFolder folder;
  const fs::path target = folder / "relatório_ção.XML";
};

TEST_F(Replacing, TheTargetChangesOnlyWhenFinished) {
  {
    ReplacingFile file(target);
    file.Append("new");
    EXPECT_EQ(test::ReadFile(target), "earlier");
    file.Finish();
    EXPECT_EQ(test::ReadFile(target), "new");
  }
  EXPECT_EQ(test::ReadFile(target), "new");
  EXPECT_EQ(FilesIn(folder.Path()), 1u);
}

TEST_F(Replacing, AnUnfinishedFileLeavesNothing) {
  ReplacingFile(target).Append("half");
  ExpectTheEarlierOneAlone();
}

TEST_F(Replacing, CopiesFromWhatItWroteEvenWhenReplaced) {
  const std::string bytes = "<" + std::string(300'000, 'm') + ">";
  ReplacingFile first(target);
  first.Append(bytes);
  first.Finish();
  test::WriteFile(folder / "other", "x");
  fs::rename(folder / "other", target);
  test::MemorySink copy;
  first.CopyTo(copy, 1, bytes.size() - 1);
  copy.Finish();
  EXPECT_EQ(copy.bytes, std::string(300'000, 'm'));
  EXPECT_THROW(first.CopyTo(copy, 0, bytes.size() + 1), FileError);
}

TEST_F(Replacing, TheNextRunRemovesWhatAKilledOneLeftAndNothingElse) {
  test::WriteFile(folder / "notes.tmp", "somebody's own");
  test::InProcess killed([&](const std::function<void()>&) {
    ReplacingFile file(target);
    file.Append("half");
    return ::raise(SIGKILL);
  });
  ASSERT_EQ(killed.Wait(), -1);
  EXPECT_EQ(test::ReadFile(target), "earlier");
  ASSERT_EQ(FilesIn(folder.Path()), 3u) << "the killed process left its temporary file";

  ReplacingFile running(folder / "b.XML");
  EXPECT_EQ(FilesIn(folder.Path()), 3u) << "it is gone, and a running one took its place";
  ReplacingFile file(target);
  EXPECT_EQ(FilesIn(folder.Path()), 4u) << "a running export keeps its own";
  file.Finish();
  running.Finish();
  EXPECT_TRUE(fs::exists(folder / "b.XML"));
  EXPECT_EQ(FilesIn(folder.Path()), 3u);
}

TEST_F(Replacing, ADiskThatRunsFullLeavesTheEarlierFile) {
  test::InProcess full([&](const std::function<void()>&) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100'000, 100'000};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    try {
      ReplacingFile file(target);
      file.Append(std::string(200'000, 'x'));
      file.Finish();
    } catch (const FileError& error) {
      return error.Number() == EFBIG ? 42 : 3;
    }
    return 1;
  });
  EXPECT_EQ(full.Wait(), 42);
  ExpectTheEarlierOneAlone();
}

TEST_F(Replacing, PlacesThatTakeNoFileAreNamed) {
  test::WriteFile(folder / "file", "");
  fs::create_directories(folder / "taken.XML" / "inside");
  EXPECT_THROW(ReplacingFile(folder / "file" / "a.XML"), FileError);
  EXPECT_THROW(ReplacingFile(folder / "missing" / "a.XML"), FileError);
  try {
    ReplacingFile(folder / "taken.XML").Finish();
    FAIL() << "a folder stands in its place";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("taken.XML\": já existe uma pasta com esse nome"),
              std::string::npos)
        << error.what();
  }
  EXPECT_EQ(FilesIn(folder.Path()), 3u);
}

}  // namespace
}  // namespace korvel::toolkit
