// Seconds of film whose sound is mixed in a second of processor time: 32 objects, each with its file, a fade and an
// echo.
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "cinora/host/host.h"
#include "cinora/host/project.h"
#include "cinora/sound/sound_reader.h"

namespace {

constexpr int objects = 32, rate = 48000, fps = 30, seconds = 60;

void writeTone(const std::string& path, int number) {
  const uint32_t count = rate * seconds * 2, bytes = count * 2;
  struct Header {
    char riff[4] = {'R', 'I', 'F', 'F'};
    uint32_t size;
    char wave[8] = {'W', 'A', 'V', 'E', 'f', 'm', 't', ' '};
    uint32_t formatSize = 16;
    uint16_t format = 1, channels = 2;
    uint32_t sampleRate = rate, byteRate = rate * 4;
    uint16_t block = 4, bits = 16;
    char data[4] = {'d', 'a', 't', 'a'};
    uint32_t dataSize;
  } header;
  header.size = 36 + bytes;
  header.dataSize = bytes;
  std::vector<int16_t> samples(count);
  for (uint32_t i = 0; i < count; i++)
    samples[i] = static_cast<int16_t>(900 * std::sin(0.01 * (number + 1) * (i / 2)) * (i % 2 ? 1 : -1));
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(&header), sizeof header);
  file.write(reinterpret_cast<const char*>(samples.data()), bytes);
}

/// Of all threads, so that what else the machine does counts for nothing.
double processorSeconds() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::string film(const std::string& folder) {
  std::string text = "[zenlay]\nwidth=64\nheight=48\nrate=30\nscale=1\nlength=" + std::to_string(seconds * fps) +
                     "\naudio_rate=" + std::to_string(rate) + "\naudio_ch=2\n";
  for (int i = 0; i < objects; i++) {
    std::string n = std::to_string(i);
    text += "[" + n + "]\nstart=1\nend=" + std::to_string(seconds * fps) + "\nlayer=" + std::to_string(i + 1) +
            "\noverlay=1\naudio=1\n[" + n + ".0]\n_name=Audio file\nfile=" + folder + "/" + n + ".wav\n[" + n +
            ".1]\n_name=Volume fade\nIn=10.00\nOut=10.00\n[" + n +
            ".2]\n_name=Audio delay\nDelay (ms)=" + std::to_string(100 + 20 * i) + "\n[" + n +
            ".3]\n_name=Standard playback\nVolume=50.0\nLeft-Right=10.0\n";
  }
  std::string path = folder + "/film.zlo";
  std::ofstream(path) << text;
  return path;
}

/// Best processor seconds of three runs of `work`.
template <class Work>
double bestOf(Work work) {
  double best = 1e9;
  for (int run = 0; run < 3; run++) {
    const double start = processorSeconds();
    work();
    best = std::min(best, processorSeconds() - start);
  }
  return best;
}

double mixingTime(const std::string& path) {
  cinora::Host host({.threads = 1});
  cinora::openProject(host, cinora::readFilmFile(path));
  return bestOf([&] {
    host.sound.forget();
    for (int frame = 0; frame < seconds * fps; frame++) host.sound.block(host, frame);
  });
}

/// Of the same files in the same blocks, and nothing else.
double readingTime(const std::string& folder, int rate) {
  std::vector<cinora::SoundReader> readers(objects);
  std::string error;
  for (int i = 0; i < objects; i++) {
    if (!readers[i].open(folder + "/" + std::to_string(i) + ".wav", error)) return 0;
    readers[i].setOutput(rate, 2);
  }
  std::vector<int16_t> block(rate / fps * 2);
  return bestOf([&] {
    for (int frame = 0; frame < seconds * fps; frame++)
      for (cinora::SoundReader& reader : readers) reader.read(int64_t{frame} * rate / fps, rate / fps, block.data());
  });
}

void print(const char* name, double time, int bar) {
  const double speed = seconds / time;
  std::printf("%-44s %8.0f %6d %10.1f%s\n", name, speed, bar, time * 1e3, speed < bar ? "  MISSED" : "");
}

}  // namespace

int main() {
  std::string name = (std::filesystem::temp_directory_path() / "zenlay-audio-XXXXXX").string();
  std::string folder = mkdtemp(name.data());
  for (int i = 0; i < objects; i++) writeTone(folder + "/" + std::to_string(i) + ".wav", i);
  const double whole = mixingTime(film(folder)), reading = readingTime(folder, rate),
               resampling = readingTime(folder, 44100);
  std::filesystem::remove_all(folder);
  std::printf("%-44s %8s %6s %10s\n", "32 objects, 48 kHz stereo", "x real", "bar", "ms");
  print("mixing with fade and delay", whole - reading, 200);
  print("reading their files", reading, 0);
  print("both", whole, 200);
  print("reading them at 44100 Hz", resampling, 0);
  return 0;
}
