// 16-bit samples that lie in a file as they are heard, read from there without a decoder.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace cinora {

class PlainSamples {
 public:
  /// Sample 0 lies `offset` bytes into the file.
  bool open(const std::string& path, int64_t offset, int channels);
  bool opened() const { return file_ != nullptr; }
  /// What is not there, because the file was cut short meanwhile, is silence.
  void read(int64_t first, int count, int16_t* out) const;

 private:
  struct Close {
    void operator()(std::FILE* file) const { fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_;
  int64_t offset_ = 0;
  int channels_ = 0;
};

}  // namespace cinora
