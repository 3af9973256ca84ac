#include "headless/RecordingGraphics.h"

#include "headless/Describe.h"

namespace sorbel::headless {

double RecordingGraphics::StringWidth(StringView text) const {
    constexpr double CharacterWidth = 7;
    return CharacterWidth * static_cast<double>(Len(text));
}

void RecordingGraphics::DrawPicture(const Picture& picture, int x, int y) {
    mIcons.push_back({{"name", picture.IconName},
                      {"x", x},
                      {"y", y},
                      {"tint", picture.Tinted ? Json(ColorText(picture.Tint)) : Json()}});
}

}  // namespace sorbel::headless
