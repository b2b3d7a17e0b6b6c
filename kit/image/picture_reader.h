// Reading pictures through the Windows Imaging Component.
#pragma once

#include "image/picture.h"

#include <stdexcept>
#include <string>

namespace image {

/// A picture that cannot be read; what() is the message for the user.
class PictureError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The first picture of a BMP, PNG, JPEG or GIF file (or whatever else Windows reads), on black where it is
/// transparent. One that is larger than any screen needs comes back smaller, of the same shape; one of more
/// than 64 million pixels is refused before it is decoded. The path is in the ANSI code page; COM must have
/// been initialised. @throws PictureError
Picture readPicture(const std::string& path);

} // namespace image
