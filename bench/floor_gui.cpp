// The least that a window on a locale file costs: a bare table that asks for the rows it shows, a line that
// filters it, an editor for the current row's translation, and a menu. Nothing is kept for an undo or a save,
// and nothing is shared with Sorbel.
//
// usage: floor_gui FILE [ITEMS]      ITEMS is the number of items in the menu
#include <QAbstractTableModel>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTableView>
#include <QtEndian>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Texts = std::array<QByteArrayView, 3>;  // identifier, default text, translation

class StringTable : public QAbstractTableModel {
  public:
    explicit StringTable(QByteArray bytes) : mBytes(std::move(bytes)) {
        for (qsizetype at = 8; at + 8 <= mBytes.size(); at += 8 + LengthAt(at))
            if (mBytes.mid(at, 4) == "enty") mTexts.push_back(TextsAt(at + 8));
        Filter({});
    }

    [[nodiscard]] int rowCount(const QModelIndex&) const override { return static_cast<int>(mShown.size()); }
    [[nodiscard]] int columnCount(const QModelIndex&) const override { return 3; }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return TextAt(index.row(), index.column());
    }

    [[nodiscard]] QString TextAt(int row, int column) const {
        const size_t shown = mShown[static_cast<size_t>(row)];
        if (const auto typed = mTyped.find(shown); column == Translation && typed != mTyped.end())
            return *typed;
        return QString::fromUtf8(mTexts[shown][static_cast<size_t>(column)]);
    }
    void SetTranslation(int row, const QString& text) {
        mTyped[mShown[static_cast<size_t>(row)]] = text;
        Q_EMIT dataChanged(index(row, Translation), index(row, Translation));
    }

    static constexpr int Translation = 2;

    void Filter(const QString& term) {
        beginResetModel();
        if (mFolded.empty() && !term.isEmpty()) FoldAll();
        const std::string folded = term.toCaseFolded().toStdString();
        mShown.clear();
        for (size_t row = 0; row < mTexts.size(); ++row)
            if (folded.empty() || Holds(row, folded)) mShown.push_back(row);
        endResetModel();
    }

  private:
    [[nodiscard]] qsizetype LengthAt(qsizetype chunk) const {
        return qFromBigEndian<qint32>(mBytes.constData() + chunk + 4);
    }
    [[nodiscard]] Texts TextsAt(qsizetype field) const {
        Texts texts;
        for (QByteArrayView& text : texts) {
            text = QByteArrayView(mBytes).sliced(field + 16, LengthAt(field + 8));
            field += 8 + LengthAt(field);
        }
        return texts;
    }
    void FoldAll() {
        for (const Texts& texts : mTexts) {
            mFoldedStarts.push_back(mFolded.size());
            for (const QByteArrayView text : texts)
                mFolded += QString::fromUtf8(text).toCaseFolded().toStdString() + '\0';
        }
        mFoldedStarts.push_back(mFolded.size());
    }
    [[nodiscard]] bool Holds(size_t row, const std::string& term) const {
        const size_t start = mFoldedStarts[row];
        return memmem(mFolded.data() + start, mFoldedStarts[row + 1] - start, term.data(), term.size());
    }

    QByteArray mBytes;
    std::vector<Texts> mTexts;
    std::vector<size_t> mShown;
    QHash<size_t, QString> mTyped;
    std::string mFolded;
    std::vector<size_t> mFoldedStarts;
};

/// The current row beside the table.
struct Panes {
    QLabel Name;
    QPlainTextEdit Default, Translation;
};

void Connect(Panes& panes, QTableView& table, StringTable& strings) {
    panes.Default.setReadOnly(true);
    QObject::connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, &strings,
                     [&](const QModelIndex& current) {
                         const QSignalBlocker ours(panes.Translation);
                         const auto text = [&](int column) {
                             return current.isValid() ? strings.TextAt(current.row(), column) : QString();
                         };
                         panes.Name.setText(text(0));
                         panes.Default.setPlainText(text(1));
                         panes.Translation.setPlainText(text(StringTable::Translation));
                     });
    QObject::connect(&panes.Translation, &QPlainTextEdit::textChanged, &strings, [&] {
        const QModelIndex current = table.currentIndex();
        if (current.isValid()) strings.SetTranslation(current.row(), panes.Translation.toPlainText());
    });
}

void AddMenu(QMenuBar& bar, int items) {
    QMenu* menu = bar.addMenu("Menu");
    for (int item = 1; item <= items; ++item)
        menu->addAction(QString("Script %1").arg(item));
}

}  // namespace

int main(int count, char** words) {
    QApplication desktop(count, words);
    QFile file(QFile::decodeName(count >= 2 ? words[1] : ""));
    if (!file.open(QIODevice::ReadOnly)) qFatal("usage: floor_gui FILE [ITEMS]");
    StringTable strings(file.readAll());

    QWidget window;
    QGridLayout layout(&window);
    QMenuBar menus;
    QLineEdit term;
    QTableView table;
    Panes panes;
    AddMenu(menus, count == 3 ? QString(words[2]).toInt() : 0);
    table.verticalHeader()->setDefaultSectionSize(20);
    table.setModel(&strings);
    Connect(panes, table, strings);
    layout.setMenuBar(&menus);
    layout.addWidget(&term, 0, 0);
    layout.addWidget(&table, 1, 0, 2, 1);
    layout.addWidget(&panes.Name, 0, 1);
    layout.addWidget(&panes.Default, 1, 1);
    layout.addWidget(&panes.Translation, 2, 1);
    term.setFocus();
    QObject::connect(&term, &QLineEdit::textChanged, &strings,
                     [&strings](const QString& text) { strings.Filter(text); });
    window.setWindowTitle(QFileInfo(file).fileName());
    window.resize(640, 480);
    window.show();
    return QApplication::exec();
}
