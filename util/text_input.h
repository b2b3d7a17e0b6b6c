// Sequential reading of a text file by lines and by free-format items.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// A text file opened for reading. As in the classic runtime the byte 1Ah ends the file, and a line ends at
/// CR LF or CR; a lone LF ends a line too, so that files from other systems read the same.
class TextInput {
  public:
    /// Reads over the given bytes. `name` stands in error messages.
    explicit TextInput(std::string bytes, std::string name = {});

    /// Opens a file. Throws RuntimeError (53, 70, 75, 76).
    static TextInput open(const std::string& path);

    bool atEnd() const;

    /// The next line without its end. Throws RuntimeError 62 at the end of the file.
    std::string line();

    /// The next item: leading blanks are passed over; a text in double quotes loses them and may hold commas
    /// and line ends; any other item ends at a comma or a line end. Throws RuntimeError 62 at the end.
    std::string item();

  private:
    void passLineEnd();
    [[noreturn]] void failAtEnd() const;
    std::string quotedItem();

    std::string bytes_;
    std::string name_;
    std::size_t position_ = 0;
};

} // namespace tavrel
