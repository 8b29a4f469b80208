// A changed variable as a row: a button with its name, its label and what changed; and, when it is
// open, old and new values side by side.

import { compareAll, titleOf } from "./comparison.js";
import { differenceTable } from "./difference-table.js";
import { aside, button, counted, element, shown } from "./elements.js";
import { isError } from "./entries.js";
import { levelName } from "./message-list.js";

/** @typedef {import("./entries.js").Variable} Variable */

/** @typedef {object} RowState
 * @property {boolean} isOpen
 * @property {boolean} isCurrent whether the tabulator key comes to it
 * @property {boolean} isWhole show all of long lists at once
 * @property {Set<string>} properties that are to be shown; empty for all
 * @property {() => void} onToggle
 */

/** @param {string[]} properties */
function listed(properties) {
  return properties.map(titleOf).join(", ").replace("print format, write format", "formats");
}

/**
 * @param {Variable} variable
 * @param {RowState} state
 */
export function variableRow(variable, state) {
  const { name, label, place, change, messages } = variable;
  const detail = `variable-${place}`;
  const row = element(
    "div",
    { class: "variable" },
    element(
      "h3",
      {},
      button(
        {
          "aria-expanded": String(state.isOpen),
          "aria-controls": state.isOpen ? detail : null,
          tabindex: state.isCurrent ? 0 : -1,
        },
        state.onToggle,
        element("span", { class: "name" }, shown(name)),
        element("span", { class: "label" }, shown(label)),
        element(
          "span",
          { class: "what" },
          messages.length === 0
            ? null
            : element("span", { class: "flag" }, counted(messages.length, "message")),
          element("span", { class: "properties" }, aside("changed: "), listed(change.properties)),
        ),
      ),
    ),
  );
  if (state.isOpen) row.append(detailOf(variable, detail, state));
  return row;
}

/** @param {Variable} variable @param {string} id @param {RowState} state */
function detailOf({ name, change, messages }, id, { properties, isWhole }) {
  const isShown = (/** @type {string} */ property) =>
    properties.size === 0 || properties.has(property);
  const chosen = change.properties.filter(isShown);
  const others = change.properties.filter((property) => !isShown(property));
  const comparisons = compareAll(chosen, change.old, change.new);
  const detail = element("div", { class: "detail", id });
  for (const message of messages) {
    const level = levelName(isError(message));
    detail.append(
      element(
        "p",
        { class: `note ${level.toLowerCase()}` },
        element("span", { class: "level" }, level),
        shown(message.message),
      ),
    );
  }
  detail.append(differenceTable(`Changes of ${name}`, comparisons, isWhole));
  if (others.length > 0) {
    detail.append(element("p", { class: "others" }, `Changed too: ${listed(others)}`));
  }
  return detail;
}

/**
 * About how high a row is, in pixels.
 *
 * @param {Variable} variable
 * @param {boolean} isOpen
 * @param {boolean} isNarrow
 */
export function rowHeight({ change }, isOpen, isNarrow) {
  const closed = isNarrow ? 76 : 41;
  if (!isOpen) return closed;
  const most = 17;
  const listSize = (/** @type {any} */ values) => values?.valueLabels?.length ?? 0;
  const pairs = Math.min(most, Math.max(listSize(change.old), listSize(change.new)));
  return closed + 50 + 30 * (change.properties.length + pairs);
}
