// What a build shows while it runs and when it is done.
#pragma once

#include <string>

namespace tavrel {

/// The role of the progress window `Form2`. Touching anything of a window that is closed opens it again in
/// its working state.
class ProgressWindow {
  public:
    static constexpr int imageCount = 5; ///< 0, 1 working; 2, 3 error; 4 finished

    virtual ~ProgressWindow() = default;
    virtual void show() = 0;
    virtual void close() = 0;
    virtual std::string text() = 0;
    virtual void setText(const std::string& text) = 0;
    virtual void setImageVisible(int image, bool visible) = 0;
    /// The blink timer of the working pictures.
    virtual void enableTimer1(bool enabled) = 0;
    /// The blink timer of the error pictures.
    virtual void enableTimer2(bool enabled) = 0;
};

} // namespace tavrel
