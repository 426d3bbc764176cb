#include "cinora/export/exporter.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "cinora/host/frame_renderer.h"
#include "cinora/picture/frame_converter.h"
#include "cinora/support/failure.h"

namespace cinora {
namespace {

constexpr size_t queueLength = 3;  // frames waiting for the encoder

/// The writer on a thread of its own behind a short queue. What it throws comes out of put and finish.
class WritingThread {
 public:
  explicit WritingThread(FrameWriter& writer) : writer_(writer), thread_(&WritingThread::run, this) {}
  ~WritingThread() { stop(true); }

  /// A frame and its sound. Waits while the queue is full.
  void put(AvFrame frame, int number, SoundBlock sound) {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return failure_ || queue_.size() < queueLength; });
    if (failure_) std::rethrow_exception(failure_);
    queue_.push_back({std::move(frame), number, std::move(sound)});
    changed_.notify_all();
  }
  void finish() {
    stop(false);
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  struct Entry {
    AvFrame frame;
    int number;
    SoundBlock sound;
  };

  void stop(bool drop) {
    if (!thread_.joinable()) return;
    {
      std::lock_guard guard(lock_);
      closed_ = true;
      dropped_ = drop;
      changed_.notify_all();
    }
    thread_.join();
  }

  void run() {
    try {
      for (;;) {
        Entry entry;
        {
          std::unique_lock guard(lock_);
          changed_.wait(guard, [this] { return closed_ || !queue_.empty(); });
          if (dropped_) return;
          if (queue_.empty()) break;
          entry = std::move(queue_.front());
          queue_.pop_front();
          changed_.notify_all();
        }
        writer_.write(std::move(entry.frame), entry.number);
        if (entry.sound.count > 0) writer_.writeSound(entry.sound.samples.data(), entry.sound.count);
      }
      writer_.finish();
    } catch (...) {
      std::lock_guard guard(lock_);
      failure_ = std::current_exception();
      changed_.notify_all();
    }
  }

  FrameWriter& writer_;
  std::mutex lock_;
  std::condition_variable changed_;
  std::deque<Entry> queue_;
  bool closed_ = false, dropped_ = false;
  std::exception_ptr failure_;
  std::thread thread_;  // last: starts when the rest is ready
};

/// Tells every filter that a save begins, and that it has ended however this block is left.
class SaveBracket {
 public:
  SaveBracket(Host& host, int first, int last) : host_(host) {
    for (const auto& filter : host_.plugins.filters())
      if (filter->record->saveStart) filter->record->saveStart(filter->record, first, last, host_.editHandle());
  }
  ~SaveBracket() {
    for (const auto& filter : host_.plugins.filters())
      if (filter->record->saveEnd) filter->record->saveEnd(filter->record, host_.editHandle());
  }
  SaveBracket(const SaveBracket&) = delete;
  SaveBracket& operator=(const SaveBracket&) = delete;

 private:
  Host& host_;
};

/// Makes the encoder's pictures, frame by frame, all of the size of the first one.
class FrameSource {
 public:
  FrameSource(Host& host, bool alpha) : host_(host), alpha_(alpha) {}

  FrameShape shapeOf(int frame) {
    render(frame);
    shape_ = {current_.width, current_.height, host_.edit.format.rate, host_.edit.format.scale};
    return shape_;
  }
  void setFormat(AVPixelFormat format, bool fullRange) {
    converter_.emplace(host_.pool, format, shape_.width, shape_.height, fullRange);
  }
  AvFrame picture(int frame) {
    if (frame != rendered_) render(frame);
    rendered_ = -1;
    if (current_.width != shape_.width || current_.height != shape_.height)
      throw Failure("frame " + std::to_string(frame + 1) + " has another size than the first");
    return alpha_ ? converter_->convert(withAlpha_.data(), shape_.width)
                  : converter_->convert(current_.rows, current_.rowPixels);
  }

 private:
  void render(int frame) {
    current_ = renderFrame(host_, frame);
    rendered_ = frame;
    if (!alpha_) return;
    RenderedFrame black = current_;
    size_t pixels = static_cast<size_t>(black.width) * black.height;
    overBlack_.resize(pixels);
    withAlpha_.resize(pixels);
    copyRows(black, overBlack_.data());
    current_ = renderFrame(host_, frame, whiteBackground);
    if (current_.width != black.width || current_.height != black.height)
      throw Failure("frame " + std::to_string(frame + 1) + " changes its size with the background");
    int width = current_.width;
    host_.pool.forRows(current_.height, [&](int first, int last) {
      for (int y = first; y < last; y++) {
        size_t at = static_cast<size_t>(y) * width;
        separateAlpha(&overBlack_[at], current_.rows + static_cast<size_t>(y) * current_.rowPixels, &withAlpha_[at],
                      width);
      }
    });
  }

  void copyRows(const RenderedFrame& from, zenlay::FramePixel* to) {
    host_.pool.forRows(from.height, [&](int first, int last) {
      for (int y = first; y < last; y++)
        std::copy_n(from.rows + static_cast<size_t>(y) * from.rowPixels, from.width,
                    to + static_cast<size_t>(y) * from.width);
    });
  }

  Host& host_;
  bool alpha_;
  RenderedFrame current_{};
  int rendered_ = -1;
  FrameShape shape_{};
  std::optional<FrameConverter> converter_;
  std::vector<zenlay::FramePixel> overBlack_;
  std::vector<zenlay::ObjectPixel> withAlpha_;
};

/// The clip's own sound and what the sound filters make of it; without either there is nothing to hear.
SoundShape soundShape(const Host& host) {
  const auto& filters = host.plugins.filters();
  bool made = std::any_of(filters.begin(), filters.end(),
                          [](auto& filter) { return filter->active && filter->record->flags & filterAudio; });
  if (!host.edit.hasSound || (!host.edit.media && !made)) return {};
  return {host.edit.format.audioRate, host.edit.format.audioChannels};
}

void exportSound(Host& host, const ExportRequest& request, const ExportProgress& progress) {
  SoundShape shape{host.edit.format.audioRate, host.edit.format.audioChannels};
  if (!host.edit.hasSound) throw Failure("the film has no sound");
  std::unique_ptr<SoundWriter> writer = makeSoundWriter(request.output, shape);
  for (int frame = request.first; frame <= request.last; frame++) {
    const SoundBlock& block = host.sound.block(host, frame);
    writer->write(block.samples.data(), block.count);
    if (!progress(frame - request.first + 1, request.last - request.first + 1)) throw Failure("interrupted");
  }
  writer->finish();
}

}  // namespace

ExportRequest requestOfSelection(const Host& host, const std::string& path, bool alpha) {
  return {.output = {.path = path, .alpha = alpha}, .first = host.edit.selectionFirst, .last = host.edit.selectionLast};
}

void exportFilm(Host& host, const ExportRequest& request, const ExportProgress& progress) {
  int total = request.last - request.first + 1;
  OutputKind kind = checkOutput(request.output, total);
  SaveBracket bracket(host, request.first, request.last);
  host.sound.forget();
  if (kind == OutputKind::sound) return exportSound(host, request, progress);
  FrameSource source(host, request.output.alpha);
  std::unique_ptr<FrameWriter> writer = makeWriter(request.output, source.shapeOf(request.first), soundShape(host));
  source.setFormat(writer->pixelFormat(), writer->fullRange());
  WritingThread writing(*writer);
  for (int frame = request.first; frame <= request.last; frame++) {
    AvFrame picture = source.picture(frame);
    writing.put(std::move(picture), frame + 1, writer->takesSound() ? host.sound.block(host, frame) : SoundBlock{});
    if (!progress(frame - request.first + 1, total)) throw Failure("interrupted");
  }
  writing.finish();
}

}  // namespace cinora
