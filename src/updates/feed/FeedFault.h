#pragma once

#include <QString>

namespace Quillory {

// Why a feed is not used.
enum class FeedFault {
    noSignature,     // there is none, or it is no signature
    otherKey,        // signed by a key that is not ours
    wrongSignature,  // the bytes, or the comment beside the signature, are others than were signed
    otherFile,       // a signature of ours that tells another file's name, or no time
    notXml,          // no well-formed document of releases
    entities,        // it brings a document type
    tooLarge,        // in bytes or releases
    notAVersion,
    badArtifact,     // a package without size, checksum or address
    older,           // than the one accepted last
    stillToCome,     // signed at a time that is not yet, by this computer's clock
};

// A sentence for the user.
QString toSentence(FeedFault fault);

}
