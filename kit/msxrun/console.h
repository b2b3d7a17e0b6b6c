// The machine's keyboard, screen and printer, as the BDOS needs them.
#pragma once

#include <cstdint>

namespace msxrun {

/// What the keyboard has to offer.
struct Key {
    enum class Kind : std::uint8_t {
        none,  ///< nobody has pressed a key yet
        code,  ///< a key waits
        ended, ///< no key will ever come: a script has come to its end
    };
    Kind kind = Kind::none;
    std::uint8_t code = 0; ///< the character, when a key waits
};

/// Where characters come from and go to.
class Console {
  public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    /// The next key, left in place. With `wait` the answer is never Kind::none.
    virtual Key peek(bool wait) = 0;
    /// Takes away the key that peek() showed.
    virtual void take() = 0;
    /// True when a person types while the program runs, so that a key may interrupt output. A script's
    /// keys are for the program's own questions: output must not eat them.
    virtual bool interactive() const = 0;
    /// One character to the screen.
    virtual void write(std::uint8_t character) = 0;
    /// One character to the printer.
    virtual void print(std::uint8_t character) = 0;
};

} // namespace msxrun
