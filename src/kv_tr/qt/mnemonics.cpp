// Letters for Alt.
#include "kv_tr/qt/mnemonics.h"

#include <QChar>
#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <vector>

namespace kv_tr {
namespace {

/// A keyboard of any country has it.
bool IsPlain(QChar letter) { return (letter >= 'a' && letter <= 'z') || letter.isDigit(); }

/// Gives letters to captions so that as many as possible have one: who finds all of its own taken
/// makes another caption change to a free one.
class Letters {
public:
    explicit Letters(const QStringList& captions) : captions_(captions) {}

    void GiveTo(qsizetype caption) {
        std::set<QChar> asked;
        Give(caption, asked);
    }

    QString Marked(qsizetype caption) const {
        QString text = captions_[caption];
        for (const auto& [letter, owner] : owners_) {
            if (owner == caption) text.insert(text.indexOf(letter, 0, Qt::CaseInsensitive), '&');
        }
        return text;
    }

private:
    bool Give(qsizetype caption, std::set<QChar>& asked) {
        const QString letters = captions_[caption].toLower();
        for (const QChar letter : letters) {
            if (IsPlain(letter) && owners_.try_emplace(letter, caption).second) return true;
        }
        for (const QChar letter : letters) {
            if (!IsPlain(letter) || !asked.insert(letter).second) continue;
            if (!Give(owners_.at(letter), asked)) continue;
            owners_[letter] = caption;
            return true;
        }
        return false;
    }

    const QStringList& captions_;
    std::map<QChar, qsizetype> owners_;
};

}  // namespace

QStringList WithMnemonics(const QStringList& captions) {
    std::vector<qsizetype> order(static_cast<std::size_t>(captions.size()));
    std::iota(order.begin(), order.end(), 0);
    const auto length = [&](qsizetype caption) { return captions[caption].size(); };
    std::ranges::stable_sort(order, {}, length);
    Letters letters(captions);
    for (const qsizetype caption : order) letters.GiveTo(caption);
    QStringList marked;
    for (qsizetype i = 0; i < captions.size(); ++i) marked << letters.Marked(i);
    return marked;
}

QString WithFreeMnemonic(QString caption, const QStringList& marked) {
    if (caption.isEmpty()) return caption;
    std::set<QChar> taken;
    for (const QString& other : marked) {
        const auto mark = other.lastIndexOf('&');
        if (mark >= 0) taken.insert(other[mark + 1].toLower());
    }
    const QString letters = caption.toLower();
    caption.replace('&', "&&");
    const bool isPlain = !letters.contains('&');  // whose last "&" then is the letter's
    for (qsizetype i = 0; isPlain && i < letters.size(); ++i) {
        if (IsPlain(letters[i]) && !taken.contains(letters[i])) return caption.insert(i, '&');
    }
    for (const QChar key : QStringLiteral("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
        if (!taken.contains(key.toLower())) return caption + QString(" (&%1)").arg(key);
    }
    return caption;
}

}  // namespace kv_tr
