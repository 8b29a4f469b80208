// A comparison as a table: what a property was, and what it is.

import { aside, button, element, shown } from "./elements.js";

/** @typedef {import("./comparison.js").Comparison} Comparison */
/** @typedef {import("./comparison.js").Row} Row */

/** A list of at most so many rows is shown whole at once. */
const FEW_ITEMS = 16;
/** Of a longer one, so many of the rows that differ. */
const ITEMS_AT_ONCE = 40;

/** @param {string} text */
export function capitalized(text) {
  return text.charAt(0).toUpperCase() + text.slice(1);
}

/**
 * A table of the comparisons. Long lists begin with what differs, and a button shows the rest.
 *
 * @param {string} caption for screen readers
 * @param {Comparison[]} comparisons
 * @param {boolean} isWhole show all of long lists at once
 */
export function differenceTable(caption, comparisons, isWhole) {
  return element(
    "table",
    { class: "difference-table", role: "table" },
    element("caption", { class: "aside" }, shown(caption)),
    element(
      "thead",
      { role: "rowgroup" },
      element(
        "tr",
        { role: "row" },
        element("th", { scope: "col", role: "columnheader" }, "Property"),
        element("th", { scope: "col", role: "columnheader" }, "Before"),
        element("th", { scope: "col", role: "columnheader" }, "After"),
      ),
    ),
    ...comparisons.map((comparison) => bodyOf(comparison, isWhole)),
  );
}

/** @param {Comparison} comparison @param {boolean} isWhole @returns {HTMLElement} */
function bodyOf(comparison, isWhole) {
  const { title, isList, rows } = comparison;
  const body = element("tbody", { role: "rowgroup" });
  if (!isList) {
    body.append(rowOf(capitalized(title), rows[0], false));
    return body;
  }
  body.append(headOf(comparison));
  const isCut = !isWhole && rows.length > FEW_ITEMS;
  const some = isCut ? rows.filter(({ state }) => state !== "same").slice(0, ITEMS_AT_ONCE) : rows;
  for (const row of some) body.append(rowOf(row.key, row, row.isNumber, true));
  if (some.length < rows.length) {
    const more = button({ class: "quiet" }, () => {
      const whole = bodyOf(comparison, true);
      whole.tabIndex = -1;
      body.replaceWith(whole);
      whole.focus();
    }, `Show all ${rows.length} ${title}`);
    const cell = element("td", { class: "more", colspan: 3, role: "cell" }, more);
    body.append(element("tr", { role: "row" }, cell));
  }
  return body;
}

/** @param {Comparison} comparison */
function headOf({ title, rows, isReordered }) {
  const told = ["added", "removed", "changed"]
    .map((state) => ({ state, count: rows.filter((row) => row.state === state).length }))
    .filter(({ count }) => count > 0)
    .map(({ state, count }) => `${count} ${state}`);
  if (isReordered) told.push("in another order");
  const unchanged = rows.filter(({ state }) => state === "same").length;
  if (unchanged > 0) told.push(`${unchanged} unchanged`);
  return element(
    "tr",
    { class: "list-head", role: "row" },
    element(
      "th",
      { scope: "rowgroup", colspan: 3, role: "rowheader" },
      `${capitalized(title)} `,
      element("span", { class: "told" }, told.join(", ")),
    ),
  );
}

/**
 * @param {string | null} head
 * @param {Row} row
 * @param {boolean} isNumber whether the head is one
 * @param {boolean} [isOfList]
 */
function rowOf(head, row, isNumber, isOfList = false) {
  const key = isOfList ? `key${isNumber ? " number" : ""}` : null;
  return element(
    "tr",
    { class: isOfList ? `of-list ${row.state}` : "single", role: "row" },
    element(
      "th",
      { scope: "row", class: key, role: "rowheader" },
      head === null ? null : shown(head),
      isOfList ? aside(`${head === null ? "" : ", "}${row.state}`) : null,
    ),
    cellOf(row.before, "before", row.state === "same" ? "" : "−"),
    cellOf(row.after, "after", row.state === "same" ? "" : "+"),
  );
}

/** @param {string | null} text @param {"before" | "after"} side @param {string} sign */
function cellOf(text, side, sign) {
  const cell = element("td", { class: side, role: "cell" });
  if (text === null) {
    cell.classList.add("none");
    cell.append(element("span", { "aria-hidden": "true" }, "–"), aside("none"));
  } else {
    const mark = element("span", { class: "sign", "aria-hidden": "true" }, sign);
    cell.append(mark, element("span", { class: "text" }, shown(text)));
  }
  return cell;
}
