#pragma once

#include "platform/Interpreter.h"
#include "platform/PictureDecoder.h"
#include "platform/SandboxJob.h"

#include <QByteArray>
#include <QImage>

#include <optional>

// What a library has interpreted in a sandbox, told from both sides: the requests, with what their answers are worth, and
// the interpreter that answers them.
namespace Quillory::ForeignBytes {

// Value: a ParsedMarkdown. The bytes are strict UTF-8.
SandboxRequest markdown(QByteArray utf8);

// Value: a Picture, absent where the bytes are none that can be shown. A thumbnail's sides are at most `longestSide`
// pixels, an icon's exactly `side`.
using Picture = std::optional<QImage>;
SandboxRequest thumbnail(QByteArray bytes, int longestSide);
SandboxRequest icon(QByteArray bytes, int side);

// Runs in the sandbox. The decoder outlives it.
Interpreter interpreter(PictureDecoder const& decoder);

}
