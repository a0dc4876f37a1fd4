#pragma once
// The grid of the screens, modelled on the flex grid they were drawn with: fixed
// heading rows on top (row 0 the band over several columns, row 1 each column's
// own heading), then the data rows; every cell holds text, and the columns say how
// that text is shown (format mask, combo list) and whether it may be edited. Row
// numbers count the fixed rows, as the screens' loops do ("for r = FixedRows to
// Rows - 1").
//
// A row keeps its cells in one string, so a register of 100,000 entries costs one
// small allocation per row rather than one per cell. A register of a million is not
// held at all: its rows come from a row source a page at a time, as they are read.

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "controls/id_text_list.h"

namespace brenlow {

enum class Align { general, left, center, right };

struct GridColumn {
    std::string key;
    std::string combo_list;  // as set, "#1;Single|#2;Double"
    IdTextList combo;        // the same, read
    std::string format;      // "###0.00", "dd/MM/yy"...; empty shows the text as is
    bool editable = false;
    bool hidden = false;
    int width = 0;  // hint in characters; 0 lets the view choose
    Align alignment = Align::general;
};

// What changed, for a view that mirrors the grid. Structural changes come in
// pairs (before and after) so a view can keep its own bookkeeping straight.
struct GridChange {
    enum class Kind {
        cells,           // text of rows [first,last] x columns [first_col,last_col]
        rows_inserting,  // rows [first,last] are about to appear
        rows_inserted,
        rows_removing,  // rows [first,last] are about to go
        rows_removed,
        resetting,  // everything is about to change
        reset,
        columns,  // column count or column properties changed
    };
    Kind kind;
    int first = 0;
    int last = 0;
    int first_col = 0;
    int last_col = 0;
};

// The rectangle a heading occupies after merging: rows [row0,row1], columns [col0,col1].
struct CellSpan {
    int row0, row1, col0, col1;
    friend bool operator==(const CellSpan&, const CellSpan&) = default;
};

// A page of data rows from a row source: each line tab-separated as add_item takes
// it, each with its row data.
struct GridRowPage {
    std::vector<std::string> lines;
    std::vector<std::int64_t> data;
};
// Data rows [first, first + count) of the source, counted from 0.
using GridRowFetch = std::function<GridRowPage(int first, int count)>;

class Grid {
public:
    // Rows a row source hands over at a time, and pages kept read.
    static constexpr int kSourcePage = 256;
    static constexpr int kSourcePagesKept = 16;

    explicit Grid(int cols = 0, int fixed_rows = 1);

    int rows() const { return static_cast<int>(rows_.size()) + source_rows_; }
    int cols() const { return static_cast<int>(columns_.size()); }
    int fixed_rows() const { return fixed_rows_; }
    int data_rows() const { return rows() - fixed_rows_; }

    // Setting the row count adds empty rows or drops the last ones; it never
    // drops a fixed row.
    void set_rows(int rows);
    void set_cols(int cols);
    void set_fixed_rows(int fixed_rows);

    std::string text_matrix(int row, int col) const;
    void set_text_matrix(int row, int col, std::string_view text);
    // The cell read as a number: thousands commas skipped, "(12)" is -12,
    // anything not a number is 0.
    double value_matrix(int row, int col) const;
    // Writes a number as its plain decimal text; the column's mask shows it.
    void set_value_matrix(int row, int col, double value);
    // What the person sees: the combo text of a stored id, a number through the
    // column mask, a date through a date format; anything else as stored.
    std::string display_text(int row, int col) const;

    // Adds a row from tab-separated cell texts, at the end or before row `at`.
    // Returns the new row's number.
    int add_item(std::string_view tab_separated = {}, int at = -1);
    void remove_item(int row);
    // Drops every data row, keeping the headings.
    void clear_rows();

    // The data rows become `count` rows read from `fetch` when first shown or read.
    // Cells set on them are kept over what the source says; adding or removing a
    // row first reads every row into the grid.
    void set_row_source(int count, GridRowFetch fetch);
    bool has_row_source() const { return static_cast<bool>(fetch_); }
    // Pages read from the source so far (for tests of the paging).
    int source_fetches() const { return source_fetches_; }

    std::int64_t row_data(int row) const;
    void set_row_data(int row, std::int64_t data);

    // Columns.
    const GridColumn& column(int col) const { return columns_.at(col); }
    const std::string& col_key(int col) const { return columns_.at(col).key; }
    void set_col_key(int col, std::string key);
    // -1 when no column has the key.
    int col_index(std::string_view key) const;
    void set_col_combo_list(int col, std::string_view list);
    void set_col_format(int col, std::string format);
    void set_col_editable(int col, bool editable);
    void set_col_hidden(int col, bool hidden);
    void set_col_width(int col, int width);
    void set_col_alignment(int col, Align alignment);

    // Two-line headings: the band (row 0) and the column's own heading (the last
    // fixed row). Neighbouring columns with the same band share one band cell; a
    // column without a band, or whose band repeats its heading, shows its heading
    // over both rows.
    void set_heading(int col, std::string_view band, std::string_view heading);
    CellSpan heading_span(int row, int col) const;

    // Switching redraw off holds back every notification until it is switched on
    // again, which reports one reset: the way to fill a large grid.
    void set_redraw(bool redraw);
    bool redraw() const { return redraw_; }

    void set_on_change(std::function<void(const GridChange&)> on_change) {
        on_change_ = std::move(on_change);
    }

private:
    struct Row {
        std::string cells;  // cell texts joined by the unit separator
        std::int64_t data = 0;
    };

    void check(int row, int col) const;
    const Row& row_at(int row) const;
    Row& row_for_edit(int row);
    // Reads every sourced row into the grid and forgets the source.
    void take_all_rows();
    void drop_source();
    void notify(const GridChange& change) const;
    void notify_cells(int row, int col) const { notify({GridChange::Kind::cells, row, row, col, col}); }
    // The band text above a heading when the column shows one, else nothing.
    bool has_band(int col) const;

    std::vector<GridColumn> columns_;
    std::vector<Row> rows_;  // with a row source, the fixed rows only
    int fixed_rows_ = 1;
    int source_rows_ = 0;
    GridRowFetch fetch_;
    mutable std::unordered_map<int, std::vector<Row>> pages_;
    mutable std::deque<int> page_order_;  // oldest read first
    mutable int source_fetches_ = 0;
    std::unordered_map<int, Row> edited_;  // sourced rows with cells set, by data row
    bool redraw_ = true;
    std::function<void(const GridChange&)> on_change_;
};

}  // namespace brenlow
