#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

// Set-up and input decoding shared by the fuzz targets.
namespace VyrFuzz {

// Makes the one QGuiApplication, on the offscreen platform unless another is
// chosen, and installs the library's translations of `locale` ("en" or
// "zh_CN") over English: the fitters measure with real font metrics and the
// texts fill the templates a user reads. Log lines are dropped (they would
// only slow the run); a fatal one still aborts.
void initGui(int* argc, char*** argv, const char* locale = "en");

// Makes the one QCoreApplication, for targets that need no fonts.
void initCore(int* argc, char*** argv);

// The input as text. A first byte 0x01 means the rest is raw UTF-16, so lone
// surrogates and NULs get through as a server's JSON can send them; anything
// else is read as UTF-8 (bad sequences become U+FFFD).
QString text(const uint8_t* data, size_t size);

// Stops the run with `what` when `holds` is false; libFuzzer keeps the input.
void require(bool holds, const char* what, const QString& input);

} // namespace VyrFuzz
