#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>

namespace sorbel {

/// Lines of text in the shape in which they were drawn last. To find its glyphs takes most of the time that a
/// text takes to be painted, and rows keep theirs from paint to paint.
class ShapedLines {
  public:
    /// A line that ends in an ellipsis where the width, in pixels, is too small for all of it. It is valid
    /// until the next call.
    [[nodiscard]] const QStaticText& Shape(const QString& line, const QFont& font, int width);

  private:
    struct Key {
        QString Line;
        QString Font;
        int Width;
        bool operator==(const Key&) const = default;
        friend size_t qHash(const Key& key, size_t seed) {
            return qHashMulti(seed, key.Line, key.Font, key.Width);
        }
    };
    static constexpr int Most = 500;  // more than a screen shows
    QCache<Key, QStaticText> mLines{Most};
};

}  // namespace sorbel
