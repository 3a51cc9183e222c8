#pragma once

#include "result_tables/render/XlsxBook.h"

namespace Kestrel::ResultTables {

/// How the cells of a workbook look. Numbers that have no style of their own are shown as they are.
struct XlsxStyles {
  explicit XlsxStyles(XlsxBook& book);

  lxw_format& head;
  lxw_format& title;
  lxw_format& link;
  lxw_format& word;         ///< that stands for a number
  lxw_format& withNaN;      ///< a number out of a series that holds NaN
  lxw_format& limit;        ///< that people may change
  lxw_format& usedLimit;    ///< that follows from one
  lxw_format& utilisation;  ///< as a percentage
  lxw_format& valid;        ///< whether an element is
  lxw_format& exceeded;     ///< on top of another
};

}  // namespace Kestrel::ResultTables
