#include "platform/BinaryStream.h"

namespace sorbel {

void BinaryStream::Grow(StringView bytes) {
    if (!mBlock) throw IOException("The stream is open for reading only.");
    mBlock->Bytes.replace(mPosition, bytes.size(), bytes);
}

}  // namespace sorbel
