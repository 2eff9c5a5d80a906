#pragma once

namespace ostrivane::cli {

/// What whoever started the program had it ignore stays ignored: "nohup" is such a wish.
bool isIgnored(int signal);

/// Whether the signal was most likely typed, so that every process in front of the terminal has it: one that a key
/// sends, while this program is in front.
bool isFromKeyboard(int signal);

} // namespace ostrivane::cli
