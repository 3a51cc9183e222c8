"use strict";

// The page is complete without this script, which adds sorting, filters, keys, details and curves to the tables of the
// markup. Names hold anything: they enter the page as text, never as markup.

const texts = JSON.parse(document.getElementById("texts").textContent);
const curves = JSON.parse(document.getElementById("curves").textContent);
const language = document.documentElement.lang || "en";
const collator = new Intl.Collator(language, { numeric: true });
const decimalPoint = new Intl.NumberFormat(language).formatToParts(0.5).find((part) => part.type === "decimal").value;

// Tables of more rows have only those in the page that can be seen.
const mostStaticRows = 200;
const spareRows = 20;

// ---- elements

function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [attribute, value] of Object.entries(attributes)) made.setAttribute(attribute, value);
  made.append(...children);
  return made;
}

function button(attributes, label, onClick) {
  const made = element("button", { type: "button", ...attributes }, label);
  made.addEventListener("click", onClick);
  return made;
}

function checkbox(label, isChecked, onChange) {
  const box = element("input", { type: "checkbox" });
  box.checked = isChecked;
  box.addEventListener("change", () => onChange(box.checked));
  return element("label", {}, box, " " + label);
}

/** Makes `nodes` the children of `parent` without moving those that stay, which would take the focus from them. */
function setChildren(parent, nodes) {
  const staying = new Set(nodes);
  for (const child of [...parent.childNodes]) if (!staying.has(child)) child.remove();
  let next = parent.firstChild;
  for (const node of nodes) {
    if (node === next) next = next.nextSibling;
    else parent.insertBefore(node, next);
  }
}

/** The text of a cell without the marks behind it. */
function textOf(cell) {
  if (cell.childElementCount === 0) return cell.textContent;
  const parts = [...cell.childNodes].filter((node) => node.nodeName !== "ABBR");
  return parts.map((node) => node.textContent).join("").trim();
}

function filled(text, values) {
  return text.replace(/\{(\w+)\}/g, (place, name) => values[name].toLocaleString(language));
}

// ---- numbers, as the attributes of rows and headers have them

const infinities = new Map([["inf", Infinity], ["-inf", -Infinity]]);

/** NaN for "nan", and for "-", which is no data. */
function numberOf(plain) {
  return infinities.has(plain) ? infinities.get(plain) : Number(plain);
}

/** As the cells of the page have it. */
function shown(plain) {
  return plain.replace(".", decimalPoint).replace("nan", "NaN");
}

function percentOf(ratio) {
  return `${shown(String(Number((ratio * 100).toPrecision(4)))).replace("Infinity", "inf")} %`;
}

function partsOf(row, attribute) {
  const parts = row.getAttribute(attribute);
  return parts === null ? Array(row.cells.length).fill("-") : parts.split(" ");
}

/** Keys that are NaN come last in either direction. */
function compareKeys(one, other, isDescending) {
  if (one < other) return isDescending ? 1 : -1;
  if (one > other) return isDescending ? -1 : 1;
  return Number(Number.isNaN(one)) - Number(Number.isNaN(other));
}

/**
 * The place of each text in natural order; equal texts share one. The collator is slow, but of what is almost sorted
 * already it compares little more than neighbours.
 */
function ranksOf(list) {
  const rough = list.map((text) => text.toLowerCase().replace(/\d+/g, (digits) => digits.padStart(12, "0")));
  const sorted = list.map((text, index) => index)
    .sort((one, other) => (rough[one] < rough[other] ? -1 : Number(rough[one] > rough[other])))
    .sort((one, other) => collator.compare(list[one], list[other]));
  const ranks = new Float64Array(list.length);
  sorted.forEach((index, place) => {
    const before = sorted[place - 1];
    ranks[index] = place > 0 && list[before] === list[index] ? ranks[before] : place;
  });
  return ranks;
}

// ---- columns

/** A column of a table. `place` is its place among all columns, `number` its place among those of numbers. */
class Column {
  constructor(table, header, place, number) {
    this.header = header;
    this.place = place;
    this.number = number;
    this.unit = header.dataset.unit || "";
    this.hasLimit = "limit" in header.dataset;
    this.limit = this.hasLimit ? numberOf(header.dataset.limit) : NaN;
    this.isQuantity = this.isNumber && !("plain" in header.dataset);
    this.selector = `#${table.element.id} tr > :nth-child(${place + 1})`;
    const parts = [...header.childNodes];
    this.name = parts[0].textContent.trim();
    this.limitText = (header.querySelector(".limit") || { textContent: "" }).textContent;
    this.button = button({ class: "sort", tabindex: "-1" }, "", () => table.sortBy(this));
    this.button.append(...parts);
    header.append(this.button);
  }

  get isNumber() {
    return this.header.dataset.type === "number";
  }

  get isHidden() {
    return Boolean(this.rule) && this.rule.style.display === "none";
  }

  // A rule of the style sheet hides all cells at once, also those of rows that enter the page later.
  set isHidden(isHidden) {
    if (!this.rule) {
      const sheet = document.styleSheets[0];
      this.rule = sheet.cssRules[sheet.insertRule(`${this.selector} {}`, sheet.cssRules.length)];
    }
    this.rule.style.display = isHidden ? "none" : "";
  }
}

function columnsOf(table) {
  let numbers = 0;
  const headers = [...table.element.tHead.rows[0].cells];
  return headers.map((header, place) =>
    new Column(table, header, place, header.dataset.type === "number" ? numbers++ : -1));
}

// ---- tables

class DataTable {
  /** Takes the rows out of the page, which is cheap as long as the style does not show them. */
  constructor(tableElement) {
    this.element = tableElement;
    this.section = tableElement.closest("section");
    this.body = tableElement.tBodies[0];
    this.rows = [...this.body.rows];
    this.order = this.rows.map((row, index) => index);
    this.columns = columnsOf(this);
    this.sorting = null;
    this.isPrinting = false;
    this.rowHeight = 0;
    this.keys = new Map();
    this.active = { row: -1, column: this.columns[0] };
    this.isVirtual = this.rows.length > mostStaticRows;
    this.markCurves();
    if (this.isVirtual) this.body.replaceChildren();
    this.build();
    this.listen();
    this.render();
  }

  build() {
    const head = element("div", { class: "table-head" });
    this.scroller = element("div", { class: "scroller" });
    this.element.before(head, this.scroller);
    head.append(...this.section.querySelectorAll("h4"), ...this.toolsOfTable());
    this.scroller.append(this.element);
    this.element.setAttribute("role", "grid");
    this.element.classList.add("ready");
    this.columns[0].button.tabIndex = 0;
    if (this.isVirtual) this.widths = this.widestRow();
  }

  toolsOfTable() {
    const tools = [];
    if (this.columns.some((column) => column.hasLimit)) {
      this.utilisationButton = button({ "aria-pressed": "false" }, texts.byUtilisation, () => this.sortBy(null));
      tools.push(this.utilisationButton);
    }
    const choices = this.columns.slice(1).map((column) => {
      column.choice = checkbox(column.name, true, (isChecked) => this.showColumn(column, isChecked));
      return column.choice;
    });
    if (choices.length > 1) {
      const choice = element("div", { class: "choice" }, ...choices);
      tools.push(element("details", { class: "menu" }, element("summary", {}, texts.columns), choice));
    }
    tools.push(button({}, texts.copy, () => this.copy()));
    return tools;
  }

  markCurves() {
    this.curves = curves[this.element.id] || {};
    for (const [row, ofRow] of Object.entries(this.curves)) {
      for (const number of Object.keys(ofRow)) {
        const cell = this.rows[row].cells[this.placeOf(Number(number))];
        cell.classList.add("curve");
        cell.setAttribute("aria-haspopup", "dialog");
      }
    }
  }

  placeOf(number) {
    return this.columns.find((column) => column.number === number).place;
  }

  listen() {
    this.scroller.addEventListener("scroll", () => this.renderSoon());
    this.element.addEventListener("keydown", (event) => this.onKey(event));
    this.body.addEventListener("click", (event) => this.onClick(event));
    this.element.addEventListener("focusin", (event) => this.onFocus(event));
    this.element.addEventListener("focusout", () => details.hide());
    this.body.addEventListener("pointermove", (event) => this.onHover(event));
    this.body.addEventListener("pointerleave", () => details.hideSoon());
  }

  // -- which rows, in which order

  /**
   * The first time the largest number or the first text comes to the top, the second time the last, the third time the
   * stored order is back. Without a column it is the utilisation that counts.
   */
  sortBy(column) {
    const directions = column === null || column.isNumber ? ["descending", "ascending"] : ["ascending", "descending"];
    const isSorted = this.sorting !== null && this.sorting.column === column;
    const direction = directions[isSorted ? directions.indexOf(this.sorting.direction) + 1 : 0];
    this.sorting = direction ? { column, direction } : null;
    this.showSorting();
    this.update();
  }

  showSorting() {
    for (const column of this.columns) column.header.removeAttribute("aria-sort");
    const { column, direction } = this.sorting || {};
    if (column) column.header.setAttribute("aria-sort", direction);
    if (!this.utilisationButton) return;
    this.utilisationButton.setAttribute("aria-pressed", String(column === null));
    this.utilisationButton.dataset.direction = column === null ? direction : "";
  }

  update() {
    const hadFocus = this.body.contains(document.activeElement);
    this.order = this.rows.map((row, index) => index).filter((index) => this.fits(index));
    if (this.sorting) this.sort();
    this.section.hidden = tools.isFiltering && this.order.length === 0;
    if (this.active.row >= 0 && !this.order.includes(this.active.row)) this.activate(-1, this.active.column);
    if (this.isVirtual) this.scroller.scrollTop = 0;
    this.render();
    if (hadFocus) this.focus(this.active.row, this.active.column);
  }

  fits(index) {
    if (tools.onlyFindings && !this.rows[index].classList.contains("f")) return false;
    return tools.filter === "" || this.cached("texts", () => this.lowerTexts())[index].includes(tools.filter);
  }

  lowerTexts() {
    const columns = this.columns.filter((column) => !column.isNumber);
    return this.rows.map((row) =>
      columns.map((column) => textOf(row.cells[column.place]).toLocaleLowerCase(language)).join("\n"));
  }

  sort() {
    const { column, direction } = this.sorting;
    const isDescending = direction === "descending";
    const keys = this.keysOf(column);
    this.order.sort((one, other) => compareKeys(keys[one], keys[other], isDescending));
  }

  cached(name, make) {
    if (!this.keys.has(name)) this.keys.set(name, make());
    return this.keys.get(name);
  }

  /** What a column is sorted by, one key per row; without a column, the highest utilisation of each row. */
  keysOf(column) {
    if (column === null) return this.cached("utilisation", () => this.highestUtilisations());
    if (!column.isNumber)
      return this.cached(column, () => ranksOf(this.rows.map((row) => textOf(row.cells[column.place]))));
    const values = this.cached(column, () => this.valuesOf(column));
    return tools.byMagnitude ? values.map(Math.abs) : values;
  }

  valuesOf(column) {
    return Float64Array.from(this.rows, (row) => numberOf(partsOf(row, "data-v")[column.number]));
  }

  /** NaN where there is no limit or no number, and for elements that are not valid, whose values are not compared. */
  utilisationOf(row, value, column) {
    return row.classList.contains("i") ? NaN : Math.abs(numberOf(value)) / Math.abs(column.limit);
  }

  highestUtilisations() {
    const limited = this.columns.filter((column) => column.hasLimit);
    return Float64Array.from(this.rows, (row) => {
      const values = partsOf(row, "data-v");
      const found = limited.map((column) => this.utilisationOf(row, values[column.number], column));
      const numbers = found.filter((ratio) => !Number.isNaN(ratio));
      return numbers.length > 0 ? Math.max(...numbers) : NaN;
    });
  }

  showColumn(column, isShown) {
    column.isHidden = !isShown;
    column.choice.firstChild.checked = isShown;
    if (!isShown && this.active.column === column) this.activate(this.active.row, this.columns[0]);
  }

  // -- rows in the page

  renderSoon() {
    if (!this.isVirtual || this.frame) return;
    this.frame = requestAnimationFrame(() => {
      this.frame = 0;
      this.render();
    });
  }

  /** Puts the rows that can be seen into the page, and gaps as high as what is left out. */
  render() {
    const nodes = this.widths ? [this.widths] : [];
    let next = 0;
    for (const position of this.positionsInPage()) {
      if (position > next) nodes.push(this.gap(position - next));
      const row = this.rows[this.order[position]];
      row.setAttribute("aria-rowindex", position + 2);
      nodes.push(row);
      next = position + 1;
    }
    if (next < this.order.length) nodes.push(this.gap(this.order.length - next));
    setChildren(this.body, nodes);
    this.element.setAttribute("aria-rowcount", this.order.length + 1);
  }

  positionsInPage() {
    const all = this.order.length;
    if (all <= mostStaticRows || this.isPrinting) return this.order.map((row, position) => position);
    const height = this.measuredRowHeight();
    const begin = Math.max(0, Math.floor(this.scroller.scrollTop / height) - spareRows);
    // The scroller is never higher than the window, but lower as long as there is little in it.
    const end = Math.min(all, Math.ceil((this.scroller.scrollTop + window.innerHeight) / height) + spareRows);
    const positions = new Set();
    for (let position = begin; position < end; ++position) positions.add(position);
    // The row with the focus stays, wherever that is.
    const active = this.order.indexOf(this.active.row);
    if (active >= 0) positions.add(active);
    return [...positions].sort((one, other) => one - other);
  }

  measuredRowHeight() {
    if (this.rowHeight > 0) return this.rowHeight;
    if (!this.body.querySelector("[aria-rowindex]")) this.body.append(this.rows[this.order[0]]);
    this.rowHeight = this.body.querySelector("[aria-rowindex], tr:last-child").getBoundingClientRect().height;
    return this.rowHeight;
  }

  gap(rows) {
    const made = element("tr", { class: "gap", "aria-hidden": "true" }, element("td"));
    made.style.height = `${rows * this.rowHeight}px`;
    return made;
  }

  /** A row that cannot be seen and keeps the columns as wide as their longest text, whatever rows are in the page. */
  widestRow() {
    const longest = this.columns.map(() => null);
    for (const row of this.rows) {
      let place = 0;
      for (let cell = row.firstElementChild; cell; cell = cell.nextElementSibling, ++place) {
        if (!longest[place] || cell.textContent.length > longest[place].textContent.length) longest[place] = cell;
      }
    }
    const cells = longest.map((cell) => cell.cloneNode(true));
    for (const cell of cells) cell.removeAttribute("id");
    return element("tr", { class: "widths", "aria-hidden": "true" }, ...cells);
  }

  print(isPrinting) {
    if (!this.isVirtual) return;
    this.isPrinting = isPrinting;
    this.render();
  }

  // -- cells and keys

  cell(row, column) {
    return row < 0 ? column.button : this.rows[row].cells[column.place];
  }

  /** The row of an event, -1 for the header, and the column; null where there is no cell. */
  placeOfEvent(event) {
    const cell = event.target.closest("th, td");
    if (!cell || !this.element.contains(cell)) return null;
    const row = this.rows.indexOf(cell.parentNode);
    if (row < 0 && !this.element.tHead.contains(cell)) return null;
    return { row, column: this.columns[cell.cellIndex] };
  }

  /** One cell of the table is where the tabulator key leads. */
  activate(row, column) {
    const before = this.cell(this.active.row, this.active.column);
    if (this.active.row < 0) before.tabIndex = -1;
    else before.removeAttribute("tabindex");
    this.active = { row, column };
    this.cell(row, column).tabIndex = 0;
  }

  focus(row, column) {
    this.activate(row, column);
    if (row >= 0) this.scrollTo(this.order.indexOf(row));
    const cell = this.cell(row, column);
    cell.focus({ preventScroll: true });
    cell.scrollIntoView({ block: "nearest", inline: "nearest" });
  }

  scrollTo(position) {
    const head = this.element.tHead.offsetHeight;
    this.scroller.style.scrollPadding = `${head}px 0 0 ${this.columns[0].header.offsetWidth}px`;
    if (this.isVirtual) {
      const top = position * this.measuredRowHeight();
      const room = this.scroller.clientHeight - head - 2 * this.rowHeight;
      if (top < this.scroller.scrollTop || top > this.scroller.scrollTop + room)
        this.scroller.scrollTop = top - room / 2;
      this.render();
    }
  }

  rowsInSight() {
    const height = this.scroller.clientHeight - this.element.tHead.offsetHeight;
    return Math.max(1, Math.floor(height / this.measuredRowHeight()));
  }

  onFocus(event) {
    const place = this.placeOfEvent(event);
    if (!place) return;
    if (place.row !== this.active.row || place.column !== this.active.column) this.activate(place.row, place.column);
    if (place.row >= 0) details.show(this, place.row, place.column);
  }

  /** Takes moves alone: a cell that comes under a pointer at rest, as the page is scrolled, is not pointed at. */
  onHover(event) {
    const place = this.placeOfEvent(event);
    if (place) details.showSoon(this, place.row, place.column);
    else details.hideSoon();
  }

  onClick(event) {
    const place = this.placeOfEvent(event);
    if (!place || String(getSelection()) !== "") return;
    this.focus(place.row, place.column);
    this.openCurve(place.row, place.column);
  }

  onKey(event) {
    if (event.key === "Enter" && this.active.row >= 0) {
      event.preventDefault();
      this.openCurve(this.active.row, this.active.column);
    }
    const target = event.altKey || event.metaKey ? null : this.targetOf(event);
    if (!target) return;
    event.preventDefault();
    const columns = this.columns.filter((column) => !column.isHidden);
    const position = Math.min(Math.max(target.position, -1), this.order.length - 1);
    const place = Math.min(Math.max(target.place, 0), columns.length - 1);
    this.focus(position < 0 ? -1 : this.order[position], columns[place]);
  }

  /** Where a key leads, possibly beyond the table. The header is at position -1. */
  targetOf(event) {
    const position = this.active.row < 0 ? -1 : this.order.indexOf(this.active.row);
    const place = this.columns.filter((column) => !column.isHidden).indexOf(this.active.column);
    const page = this.rowsInSight();
    switch (event.key) {
      case "ArrowUp": return { position: position - 1, place };
      case "ArrowDown": return { position: position + 1, place };
      case "ArrowLeft": return { position, place: place - 1 };
      case "ArrowRight": return { position, place: place + 1 };
      case "PageUp": return { position: position - page, place };
      case "PageDown": return { position: position + page, place };
      case "Home": return { position: event.ctrlKey ? -1 : position, place: 0 };
      case "End": return { position: event.ctrlKey ? Infinity : position, place: Infinity };
      default: return null;
    }
  }

  // -- what a cell says

  /** Pairs of what is said and what it is. */
  detailsOf(row, column) {
    if (!column.isNumber) return [];
    const part = (attribute) => partsOf(this.rows[row], attribute)[column.number] || "-";
    const value = part("data-v");
    const name = column.isQuantity ? texts.value : column.name;
    if (value === "-") return column.isQuantity ? [[name, texts.noData]] : [];
    const said = [[name, `${shown(value)} ${column.unit}`.trim()]];
    if (column.limitText !== "") said.push([texts.limit, column.limitText]);
    const ratio = this.utilisationOf(this.rows[row], value, column);
    if (!Number.isNaN(ratio)) said.push([texts.utilisation, percentOf(ratio)]);
    if (part("data-s") !== "-") said.push([texts.step, part("data-s")]);
    if (part("data-t") !== "-") said.push([texts.time, shown(part("data-t"))]);
    return said;
  }

  marksOf(row, column) {
    return [...this.cell(row, column).querySelectorAll("abbr")].map((mark) => `${mark.textContent} ${mark.title}`);
  }

  openCurve(row, column) {
    const curve = (this.curves[row] || {})[column.number];
    if (!curve) return;
    const title = `${textOf(this.cell(row, this.columns[0]))}, ${column.name}`;
    curveDialog.open(title, this.headings().join(", "), this.detailsOf(row, column), curve);
  }

  /** Of the unit, the family and the table. */
  headings() {
    const found = [];
    for (let section = this.section; section; section = section.parentElement.closest("section"))
      found.unshift(section.querySelector("h2, h3, h4").textContent);
    return found;
  }

  // -- copying

  copy() {
    const columns = this.columns.filter((column) => !column.isHidden);
    const head = columns.map((column) => (column.unit === "" ? column.name : `${column.name} [${column.unit}]`));
    const lines = this.order.map((index) => {
      const values = partsOf(this.rows[index], "data-v");
      return columns.map((column) => (column.isNumber ? (values[column.number] || "").replace(/^-$/, "")
        : textOf(this.rows[index].cells[column.place])));
    });
    const text = [head, ...lines].map((fields) => fields.join("\t") + "\n").join("");
    const done = filled(texts.copied, { rows: lines.length });
    copyText(text).then(() => tools.say(done), () => tools.say(texts.notCopied));
  }
}

/** Files that are opened from a disk or a mail may have no clipboard but that of the selection. */
async function copyText(text) {
  if (navigator.clipboard) {
    try {
      return await navigator.clipboard.writeText(text);
    } catch (error) {
      // Not allowed here; there is the other way.
    }
  }
  const focused = document.activeElement;
  const area = element("textarea", { class: "clipboard" });
  area.value = text;
  document.body.append(area);
  area.select();
  const isCopied = document.execCommand("copy");
  area.remove();
  focused.focus();
  if (!isCopied) throw new Error(texts.notCopied);
}

// ---- the details of a cell beside it

function listOf(pairs) {
  return pairs.map(([name, text]) => element("div", {}, element("dt", {}, name), element("dd", {}, text)));
}

const details = {
  box: element("div", { id: "details", role: "tooltip", hidden: "" }),
  cell: null,
  timer: 0,

  show(table, row, column) {
    const pairs = table.detailsOf(row, column);
    this.hide();
    if (pairs.length === 0) return;
    const marks = table.marksOf(row, column).map((text) => element("p", {}, text));
    this.box.replaceChildren(element("dl", {}, ...listOf(pairs)), ...marks);
    this.cell = table.cell(row, column);
    this.cell.setAttribute("aria-describedby", this.box.id);
    this.box.hidden = false;
    this.place();
  },

  /** Stays at the cell when that is scrolled. */
  follow() {
    if (this.cell) this.place();
  },

  /** Below the cell, or above it where there is no room. */
  place() {
    const cell = this.cell.getBoundingClientRect();
    const box = this.box.getBoundingClientRect();
    const left = Math.min(Math.max(0, cell.right - box.width), document.documentElement.clientWidth - box.width);
    const isRoomBelow = cell.bottom + box.height <= document.documentElement.clientHeight;
    this.box.style.left = `${left}px`;
    this.box.style.top = `${isRoomBelow ? cell.bottom : cell.top - box.height}px`;
  },

  showSoon(table, row, column) {
    if (this.cell === table.cell(row, column)) clearTimeout(this.timer);
    else this.later(() => this.show(table, row, column), 300);
  },

  hideSoon() {
    this.later(() => this.hide(), 150);
  },

  later(what, milliseconds) {
    clearTimeout(this.timer);
    this.timer = setTimeout(what, milliseconds);
  },

  hide() {
    clearTimeout(this.timer);
    if (this.cell) this.cell.removeAttribute("aria-describedby");
    this.cell = null;
    this.box.hidden = true;
  },
};

// ---- curves

// The parser knows the name space of SVG, which is written like an address.
const svgNamespace = new DOMParser().parseFromString("<svg>", "text/html").querySelector("svg").namespaceURI;
const anchors = { s: "start", m: "middle", e: "end" };
const shapes = {
  l: (x1, y1, x2, y2) => ["line", { x1, y1, x2, y2 }],
  t: (x, y, text, anchor) => ["text", { x, y, "text-anchor": anchors[anchor] }, text],
  p: (d) => ["path", { d }],
  c: (cx, cy, r) => ["circle", { cx, cy, r }],
};

function svgElement(name, attributes, ...children) {
  const made = document.createElementNS(svgNamespace, name);
  for (const [attribute, value] of Object.entries(attributes)) made.setAttribute(attribute, value);
  made.append(...children);
  return made;
}

/** A dot, which is a line without length that ends round, at each point of a curve. */
function dotsOn(path) {
  return path.replace(/(M?)l? ?(-?\d+) ?(-?\d+)/g, (point, isFirst, x, y) => `${isFirst || "m"}${x} ${y}h0`);
}

/** A shape, or those from one number to another that curves share. */
function shapesFor(shape) {
  const [first, last] = shape;
  return typeof first === "number" ? curves.shapes.slice(first, last + 1) : [shape];
}

function drawing(curve) {
  const attributes = { viewBox: `0 0 ${curve.w} ${curve.h}`, role: "img", "aria-label": curve.a };
  let path = "";
  const drawn = curve.s.flatMap(shapesFor).map(([kind, role, ...geometry]) => {
    if (role === "curve") [path] = geometry;
    if (role === "dots" && geometry.length === 0) geometry.push(dotsOn(path));
    const [name, place, ...text] = shapes[kind](...geometry);
    return svgElement(name, { class: role, ...place }, ...text);
  });
  return svgElement("svg", attributes, ...drawn);
}

const curveDialog = {
  title: element("h2", { id: "curve-title" }),
  about: element("p", { class: "about" }),
  content: element("div", { class: "content" }),

  build() {
    const attributes = { class: "close", "aria-label": texts.close, title: texts.close };
    const close = button(attributes, "×", () => this.dialog.close());
    const head = element("header", {}, element("div", {}, this.title, this.about), close);
    this.dialog = element("dialog", { class: "curve-dialog", "aria-labelledby": this.title.id }, head, this.content);
    // A click beside the dialog is one on its backdrop.
    this.dialog.addEventListener("click", (event) => {
      if (event.target === this.dialog) this.dialog.close();
    });
    document.body.append(this.dialog);
  },

  open(title, about, pairs, curve) {
    details.hide();
    this.title.textContent = title;
    this.about.textContent = about;
    this.content.replaceChildren(drawing(curve), element("dl", {}, ...listOf(pairs)));
    this.dialog.showModal();
  },
};

// ---- what holds for all tables

const tools = {
  filter: "",
  onlyFindings: false,
  byMagnitude: false,

  get isFiltering() {
    return this.onlyFindings || this.filter !== "";
  },

  build() {
    this.input = element("input", { type: "search", placeholder: texts.filter, "aria-label": texts.filter });
    this.input.addEventListener("input", () => this.update());
    this.findings = checkbox(texts.onlyFindings, false, () => this.update());
    this.magnitude = checkbox(texts.byMagnitude, false, () => this.update());
    this.status = element("p", { role: "status" });
    if (tables.length === 0) return;
    const bar = element("div", { class: "tools", role: "search" });
    bar.append(this.input, this.findings, this.magnitude, this.status);
    document.querySelector("main").before(bar);
  },

  update() {
    this.filter = this.input.value.toLocaleLowerCase(language);
    this.onlyFindings = this.findings.firstChild.checked;
    this.byMagnitude = this.magnitude.firstChild.checked;
    for (const table of tables) table.update();
    for (const section of document.querySelectorAll("section.family, section.unit"))
      section.hidden = this.isFiltering && !section.querySelector("section.table:not([hidden])");
    this.count();
  },

  count() {
    const sum = (lengths) => lengths.reduce((one, other) => one + other, 0);
    const shownRows = sum(tables.map((table) => table.order.length));
    const allRows = sum(tables.map((table) => table.rows.length));
    this.say(filled(texts.rows, { shown: shownRows, all: allRows }));
  },

  clear() {
    this.input.value = "";
    this.findings.firstChild.checked = false;
    this.update();
  },

  say(text) {
    this.status.textContent = text;
  },
};

/** Shows the value that a link of the summary names, whatever hides it. */
function reveal(hash) {
  const match = /^#(.+)-r(\d+)-c(\d+)$/.exec(hash);
  const table = match && tables.find((candidate) => candidate.element.id === match[1]);
  if (!table) return;
  const row = Number(match[2]);
  const column = table.columns[table.placeOf(Number(match[3]))];
  if (!table.order.includes(row)) tools.clear();
  if (column.isHidden) table.showColumn(column, true);
  table.focus(row, column);
  table.cell(row, column).scrollIntoView({ block: "center", inline: "nearest" });
}

function closeMenus(except) {
  for (const menu of document.querySelectorAll("details.menu[open]")) if (menu !== except) menu.open = false;
}

function onEscape() {
  details.hide();
  const menu = document.activeElement.closest("details.menu[open]");
  if (menu) menu.firstChild.focus();
  closeMenus(null);
}

const tables = [...document.querySelectorAll("table.data")].map((table) => new DataTable(table));
curveDialog.build();
tools.build();
tools.count();
document.body.append(details.box);
details.box.addEventListener("pointerenter", () => clearTimeout(details.timer));
details.box.addEventListener("pointerleave", () => details.hideSoon());
document.addEventListener("click", (event) => {
  closeMenus(event.target.closest("details.menu"));
  const link = event.target.closest(".worst a");
  if (!link) return;
  event.preventDefault();
  if (location.hash === link.hash) reveal(link.hash);
  else location.hash = link.hash;
});
document.addEventListener("keydown", (event) => {
  if (event.key === "Escape") onEscape();
});
document.addEventListener("scroll", () => details.follow(), true);
window.addEventListener("hashchange", () => reveal(location.hash));
window.addEventListener("beforeprint", () => tables.forEach((table) => table.print(true)));
window.addEventListener("afterprint", () => tables.forEach((table) => table.print(false)));
window.addEventListener("resize", () => tables.forEach((table) => {
  table.rowHeight = 0;
  table.renderSoon();
}));
document.documentElement.classList.add("running");
reveal(location.hash);
