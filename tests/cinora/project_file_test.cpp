#include "cinora/host/project_file.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

ProjectFile sample() {
  return {.clipName = "640x480_30fps_44100Hz.zenlay",
          .format = {640, 480, 30000, 1001, 44100, 2},
          .frameCount = 300,
          .currentFrame = 12,
          .selectionFirst = 5,
          .selectionLast = 200,
          .filters = {{"Zenlay", std::string("80ZL\0\xFF", 6)}, {"Other", ""}}};
}

std::string block(const char* kind, const std::string& contents, uint32_t crc) {
  std::string bytes = kind;
  for (uint32_t value : {static_cast<uint32_t>(contents.size()), crc})
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return bytes + contents;
}

uint32_t crc32(const std::string& bytes) {
  uint32_t crc = ~0u;
  for (char byte : bytes) {
    crc ^= static_cast<uint8_t>(byte);
    for (int bit = 0; bit < 8; bit++) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

TEST(ProjectFileTest, ReadsWhatItWrote) {
  ProjectFile read;
  ASSERT_EQ(decodeProject(encodeProject(sample()), &read), "");
  EXPECT_EQ(read.clipName, sample().clipName);
  EXPECT_EQ(read.format, sample().format);
  EXPECT_EQ(read.frameCount, 300);
  EXPECT_EQ(read.currentFrame, 12);
  EXPECT_EQ(read.selectionFirst, 5);
  EXPECT_EQ(read.selectionLast, 200);
  ASSERT_EQ(read.filters.size(), 2u);
  EXPECT_EQ(read.filters[0].name, "Zenlay");
  EXPECT_EQ(read.filters[0].data, sample().filters[0].data);
  EXPECT_EQ(read.filters[1].data, "");
}

// The check value of CRC-32/IEEE over "123456789" is CBF43926.
TEST(ProjectFileTest, OtherBlocksArePassedOverByTheirChecksum) {
  std::string bytes = encodeProject(sample());
  std::string right = bytes, wrong = bytes;
  right.insert(8, block("XTRA", "123456789", 0xCBF43926));
  wrong.insert(8, block("XTRA", "123456789", 0xCBF43927));
  ProjectFile read;
  EXPECT_EQ(decodeProject(right, &read), "");
  EXPECT_EQ(read.frameCount, 300);
  EXPECT_NE(decodeProject(wrong, &read), "");
}

TEST(ProjectFileTest, EveryCutAndEveryFlippedByteIsNoticed) {
  const std::string whole = encodeProject(sample());
  ProjectFile read;
  for (size_t length = 0; length < whole.size(); length++)
    EXPECT_NE(decodeProject(whole.substr(0, length), &read), "") << length;
  const size_t endKind = whole.size() - 12, filterKind = 8 + 12 + 44 + sample().clipName.size();
  for (size_t i = 0; i < whole.size(); i++) {
    std::string damaged = whole;
    damaged[i] ^= 0x40;
    // A filter's kind turned into an unknown one is passed over; everything else is refused.
    bool kindOfFilter = damaged.compare(0, i, whole, 0, i) == 0 && i >= filterKind && i < endKind &&
                        decodeProject(damaged, &read).empty();
    if (kindOfFilter)
      EXPECT_EQ(read.filters.size(), 1u) << i;
    else
      EXPECT_NE(decodeProject(damaged, &read), "") << i;
  }
}

TEST(ProjectFileTest, HostileClipsAndLengthsAreRefused) {
  const struct {
    int32_t ClipFormat::*number;
    int32_t value;
  } rows[] = {{&ClipFormat::width, 0},     {&ClipFormat::width, maxSide + 1}, {&ClipFormat::height, -1},
              {&ClipFormat::rate, 0},      {&ClipFormat::scale, 0},           {&ClipFormat::scale, maxRate + 1},
              {&ClipFormat::audioRate, 0}, {&ClipFormat::audioChannels, 3}};
  ProjectFile read;
  for (const auto& row : rows) {
    ProjectFile project = sample();
    project.format.*row.number = row.value;
    EXPECT_NE(decodeProject(encodeProject(project), &read), "") << row.value;
  }
  for (int32_t frames : {0, -1, maxFrameCount + 1}) {
    ProjectFile project = sample();
    project.frameCount = frames;
    EXPECT_NE(decodeProject(encodeProject(project), &read), "") << frames;
  }
  EXPECT_NE(decodeProject(std::string("CINORA\x1A\n") + "FLTR\xFF\xFF\xFF\xFF" + std::string(8, 'x'), &read), "");
  ProjectFile nameless = sample();
  nameless.filters[0].name.clear();
  EXPECT_NE(decodeProject(encodeProject(nameless), &read), "");
}

// Damage behind right checksums: what a hostile writer, not a failing disk, would make.
TEST(ProjectFileTest, AnyContentsAreReadOrRefused) {
  std::mt19937 random(7);
  const std::string whole = encodeProject(sample());
  const size_t clipAt = 8 + 12, clipBytes = 44 + sample().clipName.size();
  int accepted = 0;
  for (int round = 0; round < 20000; round++) {
    std::string clip = whole.substr(clipAt, clipBytes), filter = whole.substr(clipAt + clipBytes + 12, 16);
    for (std::string* contents : {&clip, &filter}) {
      for (uint32_t i = random() % 3; i > 0; i--)
        (*contents)[random() % contents->size()] = static_cast<char>(random());
      if (random() % 8 == 0) contents->resize(random() % (contents->size() + 1));
    }
    std::string bytes = "CINORA\x1A\n";
    for (auto [kind, contents] : {std::pair{"CLIP", clip}, {"FLTR", filter}, {"END.", std::string()}})
      bytes += block(kind, contents, crc32(contents));
    ProjectFile read;
    if (!decodeProject(bytes, &read).empty()) continue;
    accepted++;
    EXPECT_TRUE(validFormat(read.format));
    EXPECT_TRUE(read.frameCount >= 1 && read.frameCount <= maxFrameCount);
    EXPECT_LE(read.filters.at(0).name.size() + read.filters[0].data.size(), filter.size());
  }
  EXPECT_GT(accepted, 1000);
}

TEST(ProjectFileTest, FilesAreReplacedAndReasonsGiven) {
  ::test::ScratchFolder folder;
  ProjectFile read;
  EXPECT_EQ(writeProject(folder / "a.cnp", sample()), "");
  EXPECT_EQ(readProject(folder / "a.cnp", &read), "");
  EXPECT_EQ(read.frameCount, 300);
  EXPECT_EQ(readProject(folder / "none.cnp", &read), "No such file or directory");
  EXPECT_EQ(writeProject(folder / "none/a.cnp", sample()), "No such file or directory");
}

}  // namespace
}  // namespace cinora
