#pragma once

/// The check value of the calibration files: CRC-16/KERMIT (also catalogued as CRC-16/CCITT-TRUE), that is
/// width 16, polynomial 0x1021, initial value 0, reflected input and output, no final XOR. Its check value
/// over the nine characters "123456789" is 0x2189. The files store it high byte first.
///
/// A value that borrows the caller's bytes and owns nothing; the bytes must live while `process` runs.
class CRC16CCITT {
  public:
    /// @param length number of bytes at `data`; taken as an unsigned 32-bit count.
    CRC16CCITT(const unsigned char* data, int length);

    /// The check value; 0 for no bytes or null data.
    unsigned short process() const;

    /// Writes the bits of `*src` to `*dst` in reverse order (bit 0 becomes bit 7).
    /// @return 0, or -1 with nothing written when either pointer is null.
    static int invertUint8(unsigned char* dst, unsigned char* src);

    /// The same for 16 bits (bit 0 becomes bit 15).
    static int invertUint16(unsigned short* dst, unsigned short* src);

  private:
    const unsigned char* const mData;
    const int mLength;
};
