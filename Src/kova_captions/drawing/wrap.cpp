// SPDX-License-Identifier: MIT
// Rows that the viewer's size makes too long for the safe area. [79.102(f)(4)]
#include "scene.h"

#include <string.h>

namespace captions
{

static bool IsGap(const Cell &cell)
{
    return !cell.flags || cell.character == ' ';
}

static int EndOfRow(const Cell *cells, int columns)
{
    while (columns > 0 && !cells[columns - 1].flags) --columns;
    return columns;
}

// A row that is read in lines: of at most so many cells, broken at a space or after a hyphen, else where the line ends.
class Lines
{
public:
    Lines(const Cell *cells, int columns, int most)
        : m_cells(cells), m_end(EndOfRow(cells, columns)), m_most(most)
    {
        if (m_end > m_most) SkipGaps();
    }

    int Count() const
    {
        Lines lines = *this;
        int count = 1;
        while (lines.Next() && lines.m_at < lines.m_end) ++count;
        return count;
    }

    bool IsBlank() const
    {
        return m_end == 0;
    }

    // Moves to the next line: Start() and Length() are its cells. A blank row is one line without cells.
    bool Next()
    {
        if (m_started && m_at >= m_end) return false;
        m_started = true;
        m_start = m_at;
        m_length = Fit();
        m_at += m_length;
        SkipGaps();
        return true;
    }

    const Cell *Start() const
    {
        return m_cells + m_start;
    }
    int Length() const
    {
        return m_length;
    }

private:
    int Fit() const
    {
        const int left = m_end - m_at;
        if (left <= m_most) return left;
        for (int length = m_most; length > 0; --length) {
            const Cell &last = m_cells[m_at + length - 1];
            if (IsGap(m_cells[m_at + length]) || last.character == '-') return length;
        }
        return m_most;
    }

    void SkipGaps()
    {
        while (m_at < m_end && IsGap(m_cells[m_at])) ++m_at;
    }

    const Cell *m_cells;
    int m_end, m_most;
    int m_at = 0, m_start = 0, m_length = 0;
    bool m_started = false;
};

void Wrap(Panel &panel, int most_columns, int most_rows)
{
    Frame &frame = panel.frame;
    Cell wrapped[kPanelRows][kPanelColumns] = {};
    int total = 0, blank = 0;

    for (int row = 0; row < frame.rows; ++row) {
        const Lines lines(panel.cells[row], frame.columns, most_columns);
        total += lines.Count();
        blank += lines.IsBlank();
    }
    // Blank rows go first, then the oldest.
    int surplus = total > most_rows ? total - most_rows : 0;
    int dropped = surplus < blank ? surplus : blank;
    surplus -= dropped;
    int rows = 0;
    for (int row = 0; row < frame.rows; ++row) {
        Lines lines(panel.cells[row], frame.columns, most_columns);
        if (lines.IsBlank() && dropped > 0) {
            --dropped;
            continue;
        }
        while (lines.Next()) {
            if (surplus > 0) {
                --surplus;
                continue;
            }
            memcpy(wrapped[rows++], lines.Start(), sizeof(Cell) * size_t(lines.Length()));
        }
    }
    memcpy(panel.cells, wrapped, sizeof wrapped);
    frame.rows = uint8_t(rows);
    if (frame.columns > most_columns) frame.columns = uint8_t(most_columns);
}

} // namespace captions
