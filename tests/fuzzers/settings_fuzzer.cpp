// Any bytes as a settings file. What was read is written and read again the same.
#include "fuzzer.h"
#include "settings/settings.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tavrel::Settings settings = tavrel::decodeSettings({reinterpret_cast<const char*>(data), size});
    const std::string bytes = tavrel::encodeSettings(settings);
    tavrel::fuzzing::require(tavrel::decodeSettings(bytes) == settings);
    return 0;
}
