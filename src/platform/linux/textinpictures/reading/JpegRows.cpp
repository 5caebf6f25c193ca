// SPDX-License-Identifier: MIT
// The JPEG library leaves through its error handler, here by longjmp: what stands between a setjmp
// and the calls it guards has no destructors.
#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>  // needs what stands above it

#include "platform/linux/textinpictures/reading/PictureRows.h"

namespace vantorel {
namespace {

struct Errors {
  jpeg_error_mgr manager;
  std::jmp_buf leave;
};

[[noreturn]] void leave(j_common_ptr jpeg) {
  std::longjmp(reinterpret_cast<Errors*>(jpeg->err)->leave, 1);
}

void ignore(j_common_ptr /*jpeg*/) {}

std::uint32_t packed(unsigned red, unsigned green, unsigned blue) {
  return red << 16U | green << 8U | blue;
}

class JpegPictureRows : public PictureRows {
 public:
  explicit JpegPictureRows(ByteView bytes) : bytes_(bytes) {
    jpeg_.err = jpeg_std_error(&errors_.manager);
    errors_.manager.error_exit = leave;
    errors_.manager.output_message = ignore;
  }
  ~JpegPictureRows() override { jpeg_destroy_decompress(&jpeg_); }
  JpegPictureRows(const JpegPictureRows&) = delete;
  JpegPictureRows& operator=(const JpegPictureRows&) = delete;

  /// False when the head cannot be read or says that the picture is too large.
  [[nodiscard]] bool open() {
    if (!readHead() || !isReadableSize(jpeg_.image_width, jpeg_.image_height) || !start())
      return false;
    row_.resize(std::size_t{jpeg_.output_width} *
                static_cast<std::size_t>(jpeg_.output_components));
    return true;
  }

  [[nodiscard]] int width() const override { return static_cast<int>(jpeg_.output_width); }
  [[nodiscard]] int height() const override { return static_cast<int>(jpeg_.output_height); }

  [[nodiscard]] int read(int count, std::vector<std::uint32_t>& pixels) override {
    int done = 0;
    for (; done < count && !isDamaged_ && jpeg_.output_scanline < jpeg_.output_height; ++done) {
      if (!readRow()) {
        isDamaged_ = true;
        break;
      }
      append(pixels);
    }
    return done;
  }

 private:
  bool readHead() {
    if (setjmp(errors_.leave) != 0) return false;
    jpeg_create_decompress(&jpeg_);
    constexpr long maxMemory = 200'000'000;  // pictures in several passes are held at once
    jpeg_.mem->max_memory_to_use = maxMemory;
    jpeg_mem_src(&jpeg_, reinterpret_cast<const unsigned char*>(bytes_.data()),
                 static_cast<unsigned long>(bytes_.size()));
    return jpeg_read_header(&jpeg_, TRUE) == JPEG_HEADER_OK;
  }
  bool start() {
    if (setjmp(errors_.leave) != 0) return false;
    const bool isPrint = jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK;
    jpeg_.out_color_space = isPrint ? JCS_CMYK : JCS_RGB;
    return jpeg_start_decompress(&jpeg_) == TRUE;
  }
  bool readRow() {
    if (setjmp(errors_.leave) != 0) return false;
    unsigned char* row = row_.data();
    return jpeg_read_scanlines(&jpeg_, &row, 1) == 1;
  }

  void append(std::vector<std::uint32_t>& pixels) const {
    const unsigned char* at = row_.data();
    for (JDIMENSION x = 0; x < jpeg_.output_width; ++x, at += jpeg_.output_components)
      pixels.push_back(jpeg_.output_components == 4 ? fromPrint(at) : packed(at[0], at[1], at[2]));
  }
  /// Ink on paper; the files of one maker, who says so in a marker, hold what is left of the light.
  [[nodiscard]] std::uint32_t fromPrint(const unsigned char* ink) const {
    const auto light = [&](int channel) {
      const unsigned value = ink[channel];
      return jpeg_.saw_Adobe_marker == TRUE ? value : 255U - value;
    };
    const unsigned black = light(3);
    return packed(light(0) * black / 255, light(1) * black / 255, light(2) * black / 255);
  }

  ByteView bytes_;
  Errors errors_{};
  jpeg_decompress_struct jpeg_{};
  bool isDamaged_ = false;
  std::vector<unsigned char> row_;
};

}  // namespace

std::unique_ptr<PictureRows> openJpeg(ByteView bytes) {
  constexpr std::byte marker{0xFF};
  constexpr std::byte startOfImage{0xD8};
  if (bytes.size() < 4 || bytes[0] != marker || bytes[1] != startOfImage) return nullptr;
  auto rows = std::make_unique<JpegPictureRows>(bytes);
  if (!rows->open()) return nullptr;
  return rows;
}

}  // namespace vantorel
