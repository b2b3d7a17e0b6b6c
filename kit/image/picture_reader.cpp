#include "image/picture_reader.h"

#include "files/host_files.h"
#include "image/picture_header.h"
#include "util/host_path.h"

#include <algorithm>
#include <vector>
#include <windows.h>

#include <wincodec.h> // stands on windows.h

namespace image {

namespace {

/// Owns one reference to a COM object.
template <typename T> class ComPointer {
  public:
    ComPointer() = default;
    ~ComPointer() {
        if (object_ != nullptr)
            object_->Release();
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;
    T* operator->() const { return object_; }
    T* get() const { return object_; }
    T** place() { return &object_; }

  private:
    T* object_ = nullptr;
};

void require(HRESULT result, const std::string& path) {
    if (FAILED(result))
        throw PictureError(path + "\r\nThis is no picture that can be read (BMP, PNG, JPEG, GIF).");
}

std::string readFile(const std::string& path) {
    try {
        return files::readWholeFile(tavrel::hostPath(path), largestFile);
    } catch (const files::FileError& error) {
        switch (error.reason()) {
        case files::Reason::fileNotFound:
        case files::Reason::folderNotFound:
        case files::Reason::badName:
            throw PictureError(path + "\r\nThis file does not exist.");
        case files::Reason::tooLarge:
            throw PictureError(path + "\r\nThis file is too large: more than 300 million bytes.");
        default:
            throw PictureError(path + "\r\nThis file cannot be read.");
        }
    }
}

void requireSize(std::uint64_t width, std::uint64_t height, std::uint64_t pixels, const std::string& path) {
    if (pixels <= mostPixels)
        return;
    throw PictureError(path + "\r\nThis picture is too large: " + std::to_string(width) + " x " +
                       std::to_string(height) +
                       " pixels, or many frames. At most 64 million pixels are read.");
}

/// Before a decoder sees the file: some unpack all of it when they open it.
void requireHeader(std::string_view file, const std::string& path) {
    const PictureHeader header = readHeader(file);
    if (header.kind == PictureKind::damaged)
        require(E_FAIL, path);
    requireSize(header.width, header.height, header.pixels, path);
}

/// More pixels than any screen shows, so that shrinking to this first does no harm.
constexpr UINT enough = 2048;

struct Size {
    UINT width = 0;
    UINT height = 0;
};

Size limited(const Size& size) {
    const UINT longest = std::max(size.width, size.height);
    if (longest <= enough)
        return size;
    const auto shrunk = [&](UINT side) {
        return std::max(1U, static_cast<UINT>(static_cast<double>(side) * enough / longest));
    };
    return {shrunk(size.width), shrunk(size.height)};
}

Picture pictureOf(const std::vector<BYTE>& bgra, const Size& size) {
    Picture picture(static_cast<int>(size.width), static_cast<int>(size.height));
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const auto onBlack = [&](std::size_t channel) {
            return static_cast<std::uint8_t>((bgra[4 * i + channel] * bgra[4 * i + 3] + 127) / 255);
        };
        picture.pixels[i] = {onBlack(2), onBlack(1), onBlack(0)};
    }
    return picture;
}

} // namespace

Picture readPicture(const std::string& path) {
    ComPointer<IWICImagingFactory> factory;
    require(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                             reinterpret_cast<void**>(factory.place())),
            path);
    std::string file = readFile(path); // the decoder reads from it to the end
    requireHeader(file, path);
    ComPointer<IWICStream> stream;
    require(factory->CreateStream(stream.place()), path);
    require(
        stream->InitializeFromMemory(reinterpret_cast<BYTE*>(file.data()), static_cast<DWORD>(file.size())),
        path);
    ComPointer<IWICBitmapDecoder> decoder;
    require(factory->CreateDecoderFromStream(stream.get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                             decoder.place()),
            path);
    ComPointer<IWICBitmapFrameDecode> frame;
    require(decoder->GetFrame(0, frame.place()), path);
    Size size;
    require(frame->GetSize(&size.width, &size.height), path);
    if (size.width == 0 || size.height == 0)
        require(E_FAIL, path);
    requireSize(size.width, size.height, std::uint64_t{size.width} * size.height, path);
    ComPointer<IWICFormatConverter> converter;
    require(factory->CreateFormatConverter(converter.place()), path);
    require(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr,
                                  0, WICBitmapPaletteTypeCustom),
            path);
    const Size wanted = limited(size);
    ComPointer<IWICBitmapScaler> scaler;
    IWICBitmapSource* source = converter.get();
    if (wanted.width != size.width || wanted.height != size.height) {
        require(factory->CreateBitmapScaler(scaler.place()), path);
        require(
            scaler->Initialize(converter.get(), wanted.width, wanted.height, WICBitmapInterpolationModeFant),
            path);
        source = scaler.get();
    }
    std::vector<BYTE> bgra(std::size_t{4} * wanted.width * wanted.height);
    require(source->CopyPixels(nullptr, 4 * wanted.width, static_cast<UINT>(bgra.size()), bgra.data()), path);
    return pictureOf(bgra, wanted);
}

} // namespace image
