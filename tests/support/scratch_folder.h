// A folder of its own for a test, removed with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace test {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zenlay-test-XXXXXX").string();
    path_ = std::filesystem::canonical(mkdtemp(name.data())).string();
  }
  ~ScratchFolder() { removeAll(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  static void removeAll(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + '/' + std::string(name); }
  void write(std::string_view name, std::string_view bytes) const {
    std::ofstream(*this / name, std::ios::binary) << bytes;
  }

 private:
  std::string path_;
};

}  // namespace test
