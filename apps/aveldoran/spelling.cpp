#include "apps/aveldoran/spelling.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

int editDistance(const QString &one, const QString &other)
{
    const auto width = static_cast<std::size_t>(other.size()) + 1;
    std::vector<int> twoAbove(width);
    std::vector<int> above(width);
    std::vector<int> row(width);
    for (std::size_t j = 0; j < width; ++j)
        row[j] = static_cast<int>(j);
    for (int i = 1; i <= one.size(); ++i) {
        std::swap(twoAbove, above);
        std::swap(above, row);
        row[0] = i;
        for (int j = 1; j <= other.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const bool isSame = one.at(i - 1) == other.at(j - 1);
            row[at] = std::min({above[at] + 1, row[at - 1] + 1, above[at - 1] + (isSame ? 0 : 1)});
            const bool isSwapped =
                i > 1 && j > 1 && one.at(i - 1) == other.at(j - 2) && one.at(i - 2) == other.at(j - 1);
            if (isSwapped)
                row[at] = std::min(row[at], twoAbove[at - 2] + 1);
        }
    }
    return row.back();
}

QString nearestWord(const QString &typed, const QStringList &words)
{
    constexpr int kLettersPerMistake = 3;
    QString nearest;
    int least = std::max(1, typed.size() / kLettersPerMistake) + 1;
    for (const QString &word : words) {
        if (std::abs(word.size() - typed.size()) >= least || word.size() < 2)
            continue; // no need to count
        const int distance = editDistance(typed, word);
        if (distance < least) {
            least = distance;
            nearest = word;
        }
    }
    return nearest;
}
