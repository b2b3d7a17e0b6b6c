// A file system whose calls fail on demand, over the real one. What fails says that the disk is full.
#pragma once

#include "files/file_system.h"
#include "util/runtime_error.h" // what a failure becomes

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tavrel {
using files::useFileSystem;
}

namespace tavrel::test {

using files::FileError;
using files::FileSystem;
using files::OutputFile;
using files::Path;
using files::Reason;
using files::systemFiles;
using files::TargetKind;

/// While it lives, files are written through it. Calls are counted from 1; the call number `failAt` fails,
/// and with `forEver` all after it too.
class FailingFiles : public FileSystem {
  public:
    enum class Failure {
        before,  ///< nothing of the call happens
        after,   ///< the call does its work and then says that it failed
        partWise ///< a write takes half of its bytes, then fails as `before`
    };

    FailingFiles(unsigned failAt, bool forEver, Failure failure)
        : failAt_(failAt), forEver_(forEver), failure_(failure) {
        useFileSystem(this);
    }
    ~FailingFiles() override { useFileSystem(nullptr); }
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    unsigned calls() const { return calls_; }
    bool hasFailed() const { return failed_; }

    TargetKind kindOf(const Path& path) override {
        const Step step(*this);
        return systemFiles().kindOf(path);
    }
    std::unique_ptr<OutputFile> createBeside(const Path& path) override {
        const Step step(*this);
        auto file = std::make_unique<Output>(*this, systemFiles().createBeside(path));
        step.end();
        return file;
    }
    std::unique_ptr<OutputFile> openDevice(const Path& path) override {
        const Step step(*this);
        return std::make_unique<Output>(*this, systemFiles().openDevice(path));
    }
    void replace(const Path& fresh, const Path& target) override {
        const Step step(*this);
        systemFiles().replace(fresh, target);
        step.end();
    }
    void remove(const Path& path) override {
        const Step step(*this);
        systemFiles().remove(path);
        step.end();
    }

  private:
    /// One call: throws at its begin or at its end when it is its turn to fail.
    class Step {
      public:
        explicit Step(FailingFiles& files) : files_(files) {
            ++files.calls_;
            fails_ = files.calls_ == files.failAt_ || (files.forEver_ && files.calls_ > files.failAt_);
            if (fails_ && files.failure_ != Failure::after)
                fail();
        }
        void end() const {
            if (fails_)
                fail();
        }

      private:
        [[noreturn]] void fail() const {
            files_.failed_ = true;
            throw FileError(Reason::diskFull, "failing");
        }
        FailingFiles& files_;
        bool fails_ = false;
    };

    class Output : public OutputFile {
      public:
        Output(FailingFiles& files, std::unique_ptr<OutputFile> file)
            : files_(files), file_(std::move(file)) {}
        const Path& path() const override { return file_->path(); }
        std::size_t write(std::string_view bytes) override {
            if (files_.failure_ == Failure::partWise && bytes.size() > 1) // the next call takes the rest
                bytes = bytes.substr(0, bytes.size() / 2);
            const Step step(files_);
            const std::size_t count = file_->write(bytes);
            step.end();
            return count;
        }
        void flush() override {
            const Step step(files_);
            file_->flush();
            step.end();
        }
        void setTime(std::time_t time) override {
            const Step step(files_);
            file_->setTime(time);
            step.end();
        }
        void close() override {
            const Step step(files_);
            file_->close();
            step.end();
        }

      private:
        FailingFiles& files_;
        std::unique_ptr<OutputFile> file_;
    };

    unsigned failAt_;
    bool forEver_;
    Failure failure_;
    unsigned calls_ = 0;
    bool failed_ = false;
};

/// Saves with each of its calls failing in turn, once and for ever, in each of the ways; stops when a save
/// comes through without a failure. `attempt` gets the failing calls and does one save with its checks.
template <typename Attempt> void withEveryFailure(const Attempt& attempt) {
    for (const auto failure :
         {FailingFiles::Failure::before, FailingFiles::Failure::after, FailingFiles::Failure::partWise}) {
        for (const bool forEver : {false, true}) {
            for (unsigned call = 1;; ++call) {
                FailingFiles files(call, forEver, failure);
                attempt(files);
                if (!files.hasFailed())
                    break;
            }
        }
    }
}

} // namespace tavrel::test
