#ifndef RECORDLINES_H
#define RECORDLINES_H

// Which lines make a record that is loaded. The loader asks here, and so does varlune-preparer,
// which promises that a file will be loaded without building its tree.

#include <QByteArrayView>
#include <QStringView>

#include <array>

/// Intentional: a record of one line is refused like one whose lines do not fit.
inline constexpr int MinRecordSize = 2; // lines

/// Whether a record begins with this line. One that begins with another 0 is a line of the record
/// before it.
[[nodiscard]] inline bool beginsRecord(QStringView line)
{
    return line.startsWith(u"0 ");
}
[[nodiscard]] inline bool beginsRecord(QByteArrayView line)
{
    return line.startsWith("0 ");
}

/// The levels of a record's lines behind its first one.
class RecordLevels
{
public:
    /// Takes the next line, and tells whether it has a place: one of level 1 directly below the
    /// record, a deeper one below an earlier line of the level above, even if shallower ones have
    /// come in between. \p level is one digit, or 0 for what is none.
    [[nodiscard]] bool take(int level)
    {
        if (level < 1 || (level > 1 && !m_taken.at(size_t(level - 1))))
            return false;
        m_taken.at(size_t(level)) = true;
        return true;
    }

private:
    std::array<bool, 10> m_taken{};
};

#endif // RECORDLINES_H
