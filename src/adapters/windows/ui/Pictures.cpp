#include "adapters/windows/ui/Pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

using Gdiplus::Bitmap;

/// Larger image files and images are not shown.
constexpr std::uint64_t largestFile = 64ULL << 20U;
constexpr UINT longestSide = 20000;

constexpr std::uint32_t inkColour = 0x141e3c;

std::optional<WIN32_FILE_ATTRIBUTE_DATA> fileAt(const std::wstring& name) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(name.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return std::nullopt;
  return data;
}

std::uint64_t sizeOf(const WIN32_FILE_ATTRIBUTE_DATA& data) {
  return std::uint64_t{data.nFileSizeHigh} << 32U | data.nFileSizeLow;
}

/// As cameras note how they were held.
void turnUpright(Bitmap& image) {
  constexpr std::array turns{Gdiplus::RotateNoneFlipNone, Gdiplus::RotateNoneFlipX,  Gdiplus::Rotate180FlipNone,
                             Gdiplus::Rotate180FlipX,     Gdiplus::Rotate90FlipX,    Gdiplus::Rotate90FlipNone,
                             Gdiplus::Rotate270FlipX,     Gdiplus::Rotate270FlipNone};
  const UINT size = image.GetPropertyItemSize(PropertyTagOrientation);
  if (size < sizeof(Gdiplus::PropertyItem)) return;
  std::vector<std::uint64_t> memory(size / sizeof(std::uint64_t) + 1);
  auto* const item = reinterpret_cast<Gdiplus::PropertyItem*>(memory.data());
  if (image.GetPropertyItem(PropertyTagOrientation, size, item) != Gdiplus::Ok || item->length < 2) return;
  const std::size_t turn = *static_cast<const std::uint16_t*>(item->value);
  if (turn > 1 && turn <= turns.size()) image.RotateFlip(turns.at(turn - 1));
}

std::unique_ptr<Bitmap> scaled(Bitmap& image, Size room) {
  const double factor = std::min(static_cast<double>(room.width) / image.GetWidth(),
                                 static_cast<double>(room.height) / image.GetHeight());
  const int width = std::max(1, static_cast<int>(std::lround(image.GetWidth() * factor)));
  const int height = std::max(1, static_cast<int>(std::lround(image.GetHeight() * factor)));
  auto result = std::make_unique<Bitmap>(width, height, PixelFormat32bppARGB);
  Gdiplus::Graphics graphics(result.get());
  graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
  graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  Gdiplus::ImageAttributes edges;
  edges.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
  const Gdiplus::Rect target(0, 0, width, height);
  const auto drawn = graphics.DrawImage(&image, target, 0, 0, static_cast<INT>(image.GetWidth()),
                                        static_cast<INT>(image.GetHeight()), Gdiplus::UnitPixel, &edges);
  if (drawn != Gdiplus::Ok) return nullptr;
  return result;
}

/// What is written on white paper as it stands on any ground.
void keepInk(Bitmap& image) {
  Gdiplus::BitmapData data{};
  const Gdiplus::Rect all(0, 0, static_cast<INT>(image.GetWidth()), static_cast<INT>(image.GetHeight()));
  if (image.LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite, PixelFormat32bppARGB, &data) !=
      Gdiplus::Ok)
    return;
  for (UINT y = 0; y < data.Height; ++y) {
    auto* const row = reinterpret_cast<std::uint32_t*>(static_cast<std::uint8_t*>(data.Scan0) +
                                                       static_cast<std::ptrdiff_t>(y) * data.Stride);
    for (UINT x = 0; x < data.Width; ++x) {
      const std::uint32_t pixel = row[x];
      const std::uint32_t grey =
          ((pixel >> 16U & 0xFFU) * 11 + (pixel >> 8U & 0xFFU) * 16 + (pixel & 0xFFU) * 5) / 32;
      const std::uint32_t opacity = (255 - grey) * (pixel >> 24U) / 255;
      row[x] = opacity << 24U | inkColour;
    }
  }
  image.UnlockBits(&data);
}

std::optional<CLSID> pngEncoder() {
  UINT count = 0;
  UINT size = 0;
  Gdiplus::GetImageEncodersSize(&count, &size);
  std::vector<std::uint64_t> memory(size / sizeof(std::uint64_t) + 1);
  auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(memory.data());
  if (count == 0 || Gdiplus::GetImageEncoders(count, size, encoders) != Gdiplus::Ok) return std::nullopt;
  for (UINT i = 0; i < count; ++i) {
    if (std::wstring_view(encoders[i].MimeType) == L"image/png") return encoders[i].Clsid;
  }
  return std::nullopt;
}

}  // namespace

std::unique_ptr<Bitmap> readPicture(const std::string& name, Size room, bool ink) {
  const std::wstring path = wide(name);
  const auto file = fileAt(path);
  if (!file || sizeOf(*file) > largestFile) return nullptr;
  Bitmap image(path.c_str());
  if (image.GetLastStatus() != Gdiplus::Ok || image.GetWidth() == 0 || image.GetHeight() == 0) return nullptr;
  if (image.GetWidth() > longestSide || image.GetHeight() > longestSide) return nullptr;
  turnUpright(image);
  auto picture = scaled(image, room);
  if (picture && ink) keepInk(*picture);
  return picture;
}

std::wstring stampOf(const std::string& name) {
  const auto file = fileAt(wide(name));
  if (!file) return wide(name);
  return wide(name) + L'|' + std::to_wstring(sizeOf(*file)) + L'|' +
         std::to_wstring(file->ftLastWriteTime.dwHighDateTime) + L'|' +
         std::to_wstring(file->ftLastWriteTime.dwLowDateTime);
}

bool writePng(HBITMAP bitmap, const std::string& name) {
  Bitmap image(bitmap, nullptr);
  const auto encoder = pngEncoder();
  return encoder && image.Save(wide(name).c_str(), &*encoder, nullptr) == Gdiplus::Ok;
}

}  // namespace kartix::adapters::native
