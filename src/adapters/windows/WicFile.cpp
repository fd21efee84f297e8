#include "adapters/windows/WicFile.h"

#include <windows.h>
#include <wincodec.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "adapters/images/Completeness.h"
#include "adapters/windows/Apartment.h"
#include "common/Paths.h"

namespace kartix::adapters::windows {
namespace {

struct Release {
  void operator()(IUnknown* held) const { held->Release(); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

/// What `make` puts into the place it is given; null when it failed.
template <class T, class Make>
Held<T> held(Make make) {
  T* made = nullptr;
  const HRESULT result = make(&made);
  Held<T> owner(made);
  return FAILED(result) ? Held<T>() : std::move(owner);
}

Held<IWICImagingFactory> makeFactory() {
  return held<IWICImagingFactory>([](auto made) {
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                            reinterpret_cast<void**>(made));
  });
}

struct Format {
  std::string_view signature;
  const char* name;
};
using namespace std::string_view_literals;
constexpr std::array<Format, 5> formats = {{{"\xFF\xD8\xFF"sv, "jpeg"},
                                            {"\x89PNG\r\n\x1A\n"sv, "png"},
                                            {"BM"sv, "bmp"},
                                            {"II*\0"sv, "tiff"},
                                            {"MM\0*"sv, "tiff"}}};

const char* formatOf(std::string_view bytes) {
  for (const Format& format : formats) {
    if (bytes.starts_with(format.signature)) return format.name;
  }
  return nullptr;
}

std::optional<std::string> readFile(const std::string& name) {
  constexpr std::uintmax_t largest = std::uintmax_t{64} << 20U;
  const std::filesystem::path file = pathOf(name);
  std::error_code error;
  // A pipe or a device could hold up the caller.
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error || size == 0 || size > largest) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream in(file, std::ios::binary);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) return std::nullopt;
  return bytes;
}

/// The first picture of the file in `bytes`, which outlives it.
Held<IWICBitmapFrameDecode> frameOf(IWICImagingFactory& factory, const std::string& bytes) {
  const auto stream = held<IWICStream>([&](auto made) { return factory.CreateStream(made); });
  auto* const memory = reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()));
  if (!stream || FAILED(stream->InitializeFromMemory(memory, static_cast<DWORD>(bytes.size())))) return {};
  const auto decoder = held<IWICBitmapDecoder>([&](auto made) {
    return factory.CreateDecoderFromStream(stream.get(), nullptr, WICDecodeMetadataCacheOnDemand, made);
  });
  if (!decoder) return {};
  return held<IWICBitmapFrameDecode>([&](auto made) { return decoder->GetFrame(0, made); });
}

/// What the camera noted of how it was held; 1, upright, where it noted nothing.
int orientationOf(IWICBitmapFrameDecode& frame) {
  const auto notes = held<IWICMetadataQueryReader>([&](auto made) { return frame.GetMetadataQueryReader(made); });
  if (!notes) return 1;
  for (const wchar_t* const place : {L"/app1/ifd/{ushort=274}", L"/ifd/{ushort=274}"}) {
    PROPVARIANT value;
    PropVariantInit(&value);
    const bool found = SUCCEEDED(notes->GetMetadataByName(place, &value)) && value.vt == VT_UI2;
    const int orientation = found ? value.uiVal : 0;
    PropVariantClear(&value);
    if (orientation >= 1 && orientation <= 8) return orientation;
  }
  return 1;
}

bool isGrey(const GUID& format) {
  return format == GUID_WICPixelFormat8bppGray || format == GUID_WICPixelFormat16bppGray;
}

/// `source` in another form of pixels, copied into memory. Transparent ones come multiplied with their share.
std::optional<Pixels> copy(IWICImagingFactory& factory, IWICBitmapSource& source, int width, int height, bool grey) {
  const auto converter = held<IWICFormatConverter>([&](auto made) { return factory.CreateFormatConverter(made); });
  const GUID& wanted = grey ? GUID_WICPixelFormat8bppGray : GUID_WICPixelFormat32bppPBGRA;
  if (!converter || FAILED(converter->Initialize(&source, wanted, WICBitmapDitherTypeNone, nullptr, 0,
                                                 WICBitmapPaletteTypeCustom))) {
    return std::nullopt;
  }
  Pixels pixels(width, height, grey ? 1 : 4);
  const auto stride = static_cast<UINT>(pixels.target().stride);
  if (FAILED(converter->CopyPixels(nullptr, stride, static_cast<UINT>(pixels.bytes.size()), pixels.bytes.data()))) {
    return std::nullopt;
  }
  return pixels;
}

void layOnWhite(Pixels& pixels) {
  constexpr std::uint8_t white = 255;
  for (std::size_t at = 0; at < pixels.bytes.size(); at += 4) {
    const auto shine = static_cast<std::uint8_t>(white - pixels.bytes[at + 3]);
    for (std::size_t part = at; part < at + 4; ++part) {
      pixels.bytes[part] = static_cast<std::uint8_t>(pixels.bytes[part] + shine);
    }
  }
}

}  // namespace

Pixels::Pixels(int wide, int high, int parts)
    : width(wide),
      height(high),
      channels(parts),
      bytes(static_cast<std::size_t>(wide) * static_cast<std::size_t>(high) * static_cast<std::size_t>(parts)) {}

images::View Pixels::view() const {
  return {bytes.data(), std::ptrdiff_t{width} * channels, width, height, channels};
}
images::Target Pixels::target() { return {bytes.data(), std::ptrdiff_t{width} * channels, width, height, channels}; }

std::optional<WicFile> WicFile::read(const std::string& file) {
  auto bytes = readFile(file);
  const char* const format = bytes ? formatOf(*bytes) : nullptr;
  if (!format || !images::isComplete(format, *bytes)) return std::nullopt;
  const Apartment apartment;
  const auto factory = makeFactory();
  const auto frame = factory ? frameOf(*factory, *bytes) : nullptr;
  UINT width = 0;
  UINT height = 0;
  if (!frame || FAILED(frame->GetSize(&width, &height)) || width == 0 || height == 0) return std::nullopt;
  const int orientation = orientationOf(*frame);
  return WicFile{static_cast<int>(width), static_cast<int>(height), orientation, std::move(*bytes)};
}

std::optional<Pixels> WicFile::decode() const {
  const Apartment apartment;
  const auto factory = makeFactory();
  const auto frame = factory ? frameOf(*factory, bytes) : nullptr;
  GUID format{};
  if (!frame || FAILED(frame->GetPixelFormat(&format))) return std::nullopt;
  auto pixels = copy(*factory, *frame, width, height, isGrey(format));
  if (pixels && pixels->channels == 4) layOnWhite(*pixels);
  return pixels;
}

std::optional<std::string> encodeJpeg(const Pixels& pixels, int horizontal, int vertical) {
  const Apartment apartment;
  const auto factory = makeFactory();
  const auto memory = held<IStream>([](auto made) { return CreateStreamOnHGlobal(nullptr, TRUE, made); });
  if (!factory || !memory) return std::nullopt;
  const auto encoder = held<IWICBitmapEncoder>(
      [&](auto made) { return factory->CreateEncoder(GUID_ContainerFormatJpeg, nullptr, made); });
  if (!encoder || FAILED(encoder->Initialize(memory.get(), WICBitmapEncoderNoCache))) return std::nullopt;
  IPropertyBag2* options = nullptr;
  const auto frame = held<IWICBitmapFrameEncode>([&](auto made) { return encoder->CreateNewFrame(made, &options); });
  const Held<IPropertyBag2> wishes(options);
  if (!frame) return std::nullopt;
  if (wishes) {
    std::wstring name = L"ImageQuality";
    PROPBAG2 wish{};
    wish.pstrName = name.data();
    VARIANT quality;
    VariantInit(&quality);
    quality.vt = VT_R4;
    quality.fltVal = 0.9F;
    if (FAILED(wishes->Write(1, &wish, &quality))) return std::nullopt;
  }
  constexpr double usual = 72;
  const auto dots = [](int wished) { return wished > 0 ? static_cast<double>(wished) : usual; };
  const bool grey = pixels.channels == 1;
  GUID format = grey ? GUID_WICPixelFormat8bppGray : GUID_WICPixelFormat24bppBGR;
  const auto width = static_cast<UINT>(pixels.width);
  const auto height = static_cast<UINT>(pixels.height);
  const auto stride = static_cast<UINT>(pixels.view().stride);
  const auto bitmap = held<IWICBitmap>([&](auto made) {
    return factory->CreateBitmapFromMemory(
        width, height, grey ? GUID_WICPixelFormat8bppGray : GUID_WICPixelFormat32bppBGR, stride,
        static_cast<UINT>(pixels.bytes.size()), const_cast<BYTE*>(pixels.bytes.data()), made);
  });
  const auto converter = held<IWICFormatConverter>([&](auto made) { return factory->CreateFormatConverter(made); });
  if (!bitmap || !converter || FAILED(frame->Initialize(wishes.get())) || FAILED(frame->SetSize(width, height)) ||
      FAILED(frame->SetResolution(dots(horizontal), dots(vertical))) || FAILED(frame->SetPixelFormat(&format)) ||
      FAILED(converter->Initialize(bitmap.get(), format, WICBitmapDitherTypeNone, nullptr, 0,
                                   WICBitmapPaletteTypeCustom)) ||
      FAILED(frame->WriteSource(converter.get(), nullptr)) || FAILED(frame->Commit()) || FAILED(encoder->Commit())) {
    return std::nullopt;
  }
  STATSTG state{};
  if (FAILED(memory->Stat(&state, STATFLAG_NONAME)) || FAILED(memory->Seek({}, STREAM_SEEK_SET, nullptr))) {
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
  ULONG count = 0;
  if (FAILED(memory->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count)) || count != bytes.size()) {
    return std::nullopt;
  }
  return bytes;
}

}  // namespace kartix::adapters::windows
