#include "result_tables/render/XlsxStyles.h"

namespace Kestrel::ResultTables {

namespace {

constexpr lxw_color_t s_headFill = 0xE7ECF2;
constexpr lxw_color_t s_limitFill = 0xFFF7D6;
constexpr lxw_color_t s_exceededFill = 0xFFC7CE;
constexpr lxw_color_t s_exceededText = 0x9C0006;
constexpr lxw_color_t s_paleText = 0x595959;
constexpr lxw_color_t s_linkText = 0x0563C1;

}  // namespace

XlsxStyles::XlsxStyles(XlsxBook& book)
    : head(book.addFormat()),
      title(book.addFormat()),
      link(book.addFormat()),
      word(book.addFormat()),
      withNaN(book.addFormat()),
      limit(book.addFormat()),
      usedLimit(book.addFormat()),
      utilisation(book.addFormat()),
      valid(book.addFormat()),
      exceeded(book.addFormat()) {
  format_set_bold(&head);
  format_set_text_wrap(&head);
  format_set_align(&head, LXW_ALIGN_VERTICAL_TOP);
  format_set_bg_color(&head, s_headFill);
  format_set_bottom(&head, LXW_BORDER_THIN);
  format_set_bold(&title);
  format_set_font_size(&title, 16);
  format_set_font_color(&link, s_linkText);
  format_set_underline(&link, LXW_UNDERLINE_SINGLE);
  format_set_align(&word, LXW_ALIGN_RIGHT);
  format_set_num_format(&withNaN, "General\"*\"");
  format_set_align(&limit, LXW_ALIGN_RIGHT);
  format_set_bg_color(&limit, s_limitFill);
  format_set_border(&limit, LXW_BORDER_HAIR);
  format_set_align(&usedLimit, LXW_ALIGN_RIGHT);
  format_set_font_color(&usedLimit, s_paleText);
  format_set_num_format(&utilisation, "0.0%");
  // Some spreadsheets show 1 and 0 without.
  format_set_num_format(&valid, "\"TRUE\";\"TRUE\";\"FALSE\"");
  format_set_bold(&exceeded);
  format_set_font_color(&exceeded, s_exceededText);
  format_set_bg_color(&exceeded, s_exceededFill);
}

}  // namespace Kestrel::ResultTables
