// One emulator window and the programs that are run in it one after the other.
#pragma once

#include "emulator/launch.h"
#include "emulator/process.h"
#include "emulator/request.h"
#include "emulator/starter_settings.h"

#include <memory>
#include <string>

namespace emulator {

class Session {
  public:
    /// `folder` is the one with msx.exe, without a final backslash. `message` is posted to `window` whenever
    /// the emulator says something; spoken() then deals with it.
    Session(std::string folder, HWND window, UINT message);

    /// Starts the emulator, or puts the new disk into the one that runs when nothing else is different.
    /// @throws Failure, SettingsError
    void run(const Request& request);

    /// Deals with what the emulator said. @throws Failure when a command of ours failed; the emulator has
    /// ended then
    void spoken();

    /// The running emulator's process, or null.
    HANDLE process() const { return process_ ? process_->handle() : nullptr; }

    /// Takes notice of the emulator's end. @throws Failure when it did not end well
    void finished();

  private:
    void start(const Request& request);
    void startUnix(const Request& request, const std::string& program, const Surroundings& surroundings);
    void changeProgram(const Request& request);
    void stop();
    std::string copyImage(const std::string& image);
    std::string lastWords() const;

    std::string folder_;
    std::string data_; ///< openMSX's own files and the copies of the disk
    HWND window_;
    UINT message_;
    std::unique_ptr<Process> process_;
    Request request_;              ///< what runs
    StarterSettings settings_;     ///< and with which settings
    std::string failure_;          ///< what a command of ours was answered with
    std::vector<std::string> log_; ///< the last lines that the emulator said
    unsigned image_ = 1;           ///< which copy the emulator has
};

} // namespace emulator
