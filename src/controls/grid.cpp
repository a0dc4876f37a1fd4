#include "controls/grid.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "controls/number_format.h"
#include "controls/vb_date.h"

namespace brenlow {

namespace {

constexpr char kCellSeparator = '\x1f';

// Where cell `col` sits in a packed row; a row may hold fewer cells than the grid
// has columns (the missing ones are empty), so `found` can be false.
struct CellPlace {
    bool found;
    std::size_t begin;
    std::size_t end;
};

CellPlace find_cell(const std::string& cells, int col) {
    std::size_t begin = 0;
    for (int c = 0; c < col; ++c) {
        const std::size_t sep = cells.find(kCellSeparator, begin);
        if (sep == std::string::npos) return {false, 0, 0};
        begin = sep + 1;
    }
    std::size_t end = cells.find(kCellSeparator, begin);
    if (end == std::string::npos) end = cells.size();
    return {true, begin, end};
}

std::string clean(std::string_view text) {
    std::string out(text);
    std::erase(out, kCellSeparator);
    return out;
}

// A number as a grid cell may hold it: "1,234.50", "-12", "(12)". nullopt when the
// whole text is not one.
std::optional<double> read_number(std::string_view text) {
    std::string s;
    bool bracketed = false;
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    if (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
        bracketed = true;
        text = text.substr(1, text.size() - 2);
    }
    for (char c : text) {
        if (c != ',') s.push_back(c);
    }
    if (s.empty()) return std::nullopt;
    char* end = nullptr;
    const double v = std::strtod(s.c_str(), &end);
    if (end != s.c_str() + s.size()) return std::nullopt;
    return bracketed ? -v : v;
}

// A tab-separated line as a row keeps its cells.
std::string packed(std::string line) {
    std::erase(line, kCellSeparator);
    for (char& c : line)
        if (c == '\t') c = kCellSeparator;
    return line;
}

bool is_date_format(std::string_view format) {
    return format.find_first_of("dDyY") != std::string_view::npos;
}

}  // namespace

Grid::Grid(int cols, int fixed_rows) : columns_(cols), rows_(fixed_rows), fixed_rows_(fixed_rows) {}

void Grid::check(int row, int col) const {
    if (row < 0 || row >= rows() || col < 0 || col >= cols()) {
        throw std::out_of_range("grid cell " + std::to_string(row) + "," + std::to_string(col) + " outside " +
                                std::to_string(rows()) + "x" + std::to_string(cols()));
    }
}

const Grid::Row& Grid::row_at(int row) const {
    const int held = static_cast<int>(rows_.size());
    if (row < held) return rows_[row];
    const int i = row - held;
    if (auto e = edited_.find(i); e != edited_.end()) return e->second;
    const int page = i / kSourcePage;
    auto found = pages_.find(page);
    if (found == pages_.end()) {
        const int first = page * kSourcePage;
        const int count = std::min(kSourcePage, source_rows_ - first);
        GridRowPage got = fetch_(first, count);
        ++source_fetches_;
        std::vector<Row> rows(count);
        for (int k = 0; k < count; ++k) {
            if (k < static_cast<int>(got.lines.size())) rows[k].cells = packed(std::move(got.lines[k]));
            if (k < static_cast<int>(got.data.size())) rows[k].data = got.data[k];
        }
        if (static_cast<int>(page_order_.size()) >= kSourcePagesKept) {
            pages_.erase(page_order_.front());
            page_order_.pop_front();
        }
        page_order_.push_back(page);
        found = pages_.emplace(page, std::move(rows)).first;
    }
    return found->second[i % kSourcePage];
}

Grid::Row& Grid::row_for_edit(int row) {
    const int held = static_cast<int>(rows_.size());
    if (row < held) return rows_[row];
    const int i = row - held;
    if (auto e = edited_.find(i); e != edited_.end()) return e->second;
    Row copy = row_at(row);
    return edited_.emplace(i, std::move(copy)).first->second;
}

void Grid::take_all_rows() {
    if (!fetch_) return;
    std::vector<Row> all;
    all.reserve(rows());
    for (int r = 0; r < rows(); ++r) all.push_back(row_at(r));
    drop_source();
    rows_ = std::move(all);
}

void Grid::drop_source() {
    fetch_ = nullptr;
    source_rows_ = 0;
    pages_.clear();
    page_order_.clear();
    edited_.clear();
}

void Grid::set_row_source(int count, GridRowFetch fetch) {
    notify({GridChange::Kind::resetting});
    drop_source();
    rows_.resize(fixed_rows_);
    if (fetch && count > 0) {
        fetch_ = std::move(fetch);
        source_rows_ = count;
    }
    notify({GridChange::Kind::reset});
}

void Grid::notify(const GridChange& change) const {
    if (redraw_ && on_change_) on_change_(change);
}

void Grid::set_rows(int n) {
    if (n < fixed_rows_) n = fixed_rows_;
    const int old = rows();
    if (fetch_ && n == fixed_rows_) {
        // Emptying a sourced grid reads nothing.
        notify({GridChange::Kind::rows_removing, n, old - 1});
        drop_source();
        rows_.resize(n);
        notify({GridChange::Kind::rows_removed, n, old - 1});
        return;
    }
    if (n != old) take_all_rows();
    if (n > old) {
        notify({GridChange::Kind::rows_inserting, old, n - 1});
        rows_.resize(n);
        notify({GridChange::Kind::rows_inserted, old, n - 1});
    } else if (n < old) {
        notify({GridChange::Kind::rows_removing, n, old - 1});
        rows_.resize(n);
        notify({GridChange::Kind::rows_removed, n, old - 1});
    }
}

void Grid::set_cols(int n) {
    if (n < 0) n = 0;
    notify({GridChange::Kind::resetting});
    if (n < cols()) take_all_rows();
    if (n < cols()) {
        for (auto& row : rows_) {
            const CellPlace place = find_cell(row.cells, n);
            if (place.found && place.begin > 0) row.cells.resize(place.begin - 1);
        }
    }
    columns_.resize(n);
    notify({GridChange::Kind::reset});
}

void Grid::set_fixed_rows(int n) {
    if (n < 0) n = 0;
    notify({GridChange::Kind::resetting});
    take_all_rows();
    if (rows() < n) rows_.resize(n);
    fixed_rows_ = n;
    notify({GridChange::Kind::reset});
}

std::string Grid::text_matrix(int row, int col) const {
    check(row, col);
    const std::string& cells = row_at(row).cells;
    const CellPlace place = find_cell(cells, col);
    if (!place.found) return {};
    return cells.substr(place.begin, place.end - place.begin);
}

void Grid::set_text_matrix(int row, int col, std::string_view text) {
    check(row, col);
    std::string& cells = row_for_edit(row).cells;
    CellPlace place = find_cell(cells, col);
    if (!place.found) {
        // Pad the row with empty cells up to this one.
        int have = 1;
        for (char c : cells) have += c == kCellSeparator;
        cells.append(col - have + 1, kCellSeparator);
        place = {true, cells.size(), cells.size()};
    }
    cells.replace(place.begin, place.end - place.begin, clean(text));
    notify_cells(row, col);
}

double Grid::value_matrix(int row, int col) const {
    return read_number(text_matrix(row, col)).value_or(0.0);
}

void Grid::set_value_matrix(int row, int col, double value) {
    set_text_matrix(row, col, plain_number(value));
}

std::string Grid::display_text(int row, int col) const {
    std::string text = text_matrix(row, col);
    if (row < fixed_rows_ || text.empty()) return text;
    const GridColumn& column = columns_[col];
    if (!column.combo.empty()) {
        if (auto shown = column.combo.text_of(text)) return *shown;
        return text;
    }
    if (column.format.empty()) return text;
    if (is_date_format(column.format)) {
        if (auto date = Date::parse(text)) return date->format(column.format);
        return text;
    }
    if (auto number = read_number(text)) return format_mask(*number, column.format);
    return text;
}

int Grid::add_item(std::string_view tab_separated, int at) {
    if (at < 0 || at > rows()) at = rows();
    if (at < fixed_rows_) at = fixed_rows_;
    take_all_rows();
    Row row;
    row.cells = packed(std::string(tab_separated));
    notify({GridChange::Kind::rows_inserting, at, at});
    rows_.insert(rows_.begin() + at, std::move(row));
    notify({GridChange::Kind::rows_inserted, at, at});
    return at;
}

void Grid::remove_item(int row) {
    if (row < fixed_rows_ || row >= rows()) {
        throw std::out_of_range("no data row " + std::to_string(row) + " to remove");
    }
    take_all_rows();
    notify({GridChange::Kind::rows_removing, row, row});
    rows_.erase(rows_.begin() + row);
    notify({GridChange::Kind::rows_removed, row, row});
}

void Grid::clear_rows() {
    set_rows(fixed_rows_);
}

std::int64_t Grid::row_data(int row) const {
    if (row < 0 || row >= rows()) throw std::out_of_range("no row " + std::to_string(row));
    return row_at(row).data;
}

void Grid::set_row_data(int row, std::int64_t data) {
    if (row < 0 || row >= rows()) throw std::out_of_range("no row " + std::to_string(row));
    row_for_edit(row).data = data;
}

void Grid::set_col_key(int col, std::string key) {
    columns_.at(col).key = std::move(key);
}

int Grid::col_index(std::string_view key) const {
    for (int c = 0; c < cols(); ++c) {
        if (columns_[c].key == key) return c;
    }
    return -1;
}

void Grid::set_col_combo_list(int col, std::string_view list) {
    GridColumn& column = columns_.at(col);
    column.combo_list = std::string(list);
    column.combo = IdTextList::parse(list);
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_col_format(int col, std::string format) {
    columns_.at(col).format = std::move(format);
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_col_editable(int col, bool editable) {
    columns_.at(col).editable = editable;
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_col_hidden(int col, bool hidden) {
    columns_.at(col).hidden = hidden;
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_col_width(int col, int width) {
    columns_.at(col).width = width;
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_col_alignment(int col, Align alignment) {
    columns_.at(col).alignment = alignment;
    notify({GridChange::Kind::columns, 0, 0, col, col});
}

void Grid::set_heading(int col, std::string_view band, std::string_view heading) {
    if (fixed_rows_ >= 2) set_text_matrix(0, col, band);
    set_text_matrix(fixed_rows_ - 1, col, heading);
}

bool Grid::has_band(int col) const {
    if (fixed_rows_ < 2) return false;
    const std::string band = text_matrix(0, col);
    return !band.empty() && band != text_matrix(fixed_rows_ - 1, col);
}

CellSpan Grid::heading_span(int row, int col) const {
    check(row, col);
    const int last = fixed_rows_ - 1;
    if (row >= fixed_rows_) return {row, row, col, col};
    if (!has_band(col)) return {0, last, col, col};
    if (row == last) return {row, row, col, col};
    const std::string band = text_matrix(row, col);
    int col0 = col, col1 = col;
    while (col0 > 0 && has_band(col0 - 1) && text_matrix(row, col0 - 1) == band) --col0;
    while (col1 + 1 < cols() && has_band(col1 + 1) && text_matrix(row, col1 + 1) == band) ++col1;
    return {row, row, col0, col1};
}

void Grid::set_redraw(bool redraw) {
    if (redraw == redraw_) return;
    if (!redraw) {
        notify({GridChange::Kind::resetting});
        redraw_ = false;
    } else {
        redraw_ = true;
        notify({GridChange::Kind::reset});
    }
}

}  // namespace brenlow
