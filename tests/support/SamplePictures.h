#pragma once

#include <QByteArray>
#include <QSize>

namespace Quillory {

// Whole picture files, made on the fly. A byte array by a chunk's rules stands where the toolkit writes no such file.
QByteArray encodedPicture(char const* format, QSize size, bool hasAlpha = false);
QByteArray gifOf(QSize size, int frames);
QByteArray pngChunk(QByteArray const& type, QByteArray const& data);

// The PNG with further chunks right behind its header.
QByteArray withChunks(QByteArray const& png, QByteArray const& chunks);

// What announces an animation of some frames.
QByteArray animationChunk(int frames);

// A PNG of a few KB whose header promises any size, in rows of zeros of one bit each.
QByteArray promisingPng(QSize size);

}
