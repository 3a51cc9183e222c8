#pragma once

#include <optional>
#include <vector>

#include "python/Frame.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// The columns that a value has in a frame from "key" on, in their order.
struct ValueColumns {
  explicit ValueColumns(Frame& frame)
      : key(frame.add<TextColumn>("key")),
        column(frame.add<TextColumn>("column")),
        value(frame.add<RealColumn>("value")),
        valueUnit(frame.add<TextColumn>("valueUnit")),
        limit(frame.add<RealColumn>("limit")),
        exceeded(frame.add<FlagColumn>("exceeded")),
        step(frame.add<IntegerColumn>("step")),
        time(frame.add<RealColumn>("time")),
        count(frame.add<CountColumn>("count")),
        nans(frame.add<CountColumn>("nans")) {}

  /// What all values of a column have.
  struct Codes {
    TextColumn::Code key;
    TextColumn::Code column;
    TextColumn::Code valueUnit;
    std::optional<double> limit;
  };
  [[nodiscard]] std::vector<Codes> codesOf(std::vector<TableColumn> const& columns) {
    std::vector<Codes> codes;
    codes.reserve(columns.size());
    for (auto const& one : columns) {
      codes.push_back({key.codeOf(one.key), column.codeOf(one.tableDisplayName), valueUnit.codeOf(one.unit),
                       valueOf(one.limit)});
    }
    return codes;
  }

  void add(Codes const& codes, TableValue const& shown) {
    key.add(codes.key);
    column.add(codes.column);
    value.add(shownValueOf(shown));
    valueUnit.add(codes.valueUnit);
    limit.add(codes.limit);
    exceeded.add(shown.isExceeded);
    step.add(asInteger(shown.origin.step));
    time.add(shown.origin.companion);
    count.add(shown.origin.count);
    nans.add(shown.origin.nanCount);
  }

  TextColumn& key;
  TextColumn& column;
  RealColumn& value;
  TextColumn& valueUnit;
  RealColumn& limit;
  FlagColumn& exceeded;
  IntegerColumn& step;
  RealColumn& time;
  CountColumn& count;
  CountColumn& nans;
};

}  // namespace Kestrel::ResultTables
