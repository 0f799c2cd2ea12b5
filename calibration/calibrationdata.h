#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One dual-camera calibration file: the fuse ids of a pair's sensors and the stereo calibration block that
/// was computed for them. The format stands with
/// formats::DualCalibrationFile.
///
/// Paths are the phone's. Log lines carry the Android tag "CalibrationData".
class CalibrationData {
  public:
    /// Reads and checks a file. On failure the log says why and `valid` is false, except that a file whose
    /// length bytes lead outside of it, or that can't be read, leaves the object as it was.
    /// Use a fresh object per file: the fuse ids are appended to what the object holds.
    /// @param path must live as long as the object; null can't be read.
    bool parse(const char* path);

    /// Whether the two length bytes of a file would lead outside its content; true too for one of 2 GiB or
    /// more.
    static bool checkOutOfBoundsRisk(const std::vector<unsigned char>& content);

    /// Writes the parsed file back in the "maintain" layout. A partly written file is removed.
    bool write(const char* path) const;

    bool valid() const { return mValid; }

    /// Upper-case hexadecimal, two characters a byte.
    const std::string& getMasterFuseId() const { return mMasterFuseId; }
    const std::string& getSlaveFuseId() const { return mSlaveFuseId; }

    /// Replaces `out` with the raw calibration block; false, and `out` left alone, while not `valid`.
    bool getData(std::string& out) const;

    /// Prints the layout and all bytes to standard output.
    void dump() const;

  private:
    const char* mFilePath = nullptr;
    std::uint16_t mCrc = 0;
    bool mValid = false;
    std::uint16_t mDataSize = 0;
    std::vector<unsigned char> mContent;
    std::string mMasterFuseId;
    std::string mSlaveFuseId;
    bool mHasCrc = false;
};
