// A list of names of variables, each with its label where one is known.

import { button, digits, element, shown } from "./elements.js";

const NAMES_AT_ONCE = 60;

/**
 * The first names, and a button that shows the others.
 *
 * @param {string[]} names
 * @param {object} how
 * @param {(name: string) => string} how.labelOf empty for none
 * @param {((name: string) => (() => void) | null)} [how.actionOf] what a click on a name does
 * @param {boolean} [how.isWhole] show all at once
 * @returns {HTMLElement}
 */
export function nameList(names, how) {
  const { isWhole = false } = how;
  const some = isWhole ? names : names.slice(0, NAMES_AT_ONCE);
  const hasLabels = some.some((name) => how.labelOf(name) !== "");
  const list = element(
    "ul",
    { class: hasLabels ? "names labelled" : "names", role: "list" },
    ...some.map((name) => nameItem(name, how)),
  );
  const place = element("div", {}, list);
  if (some.length < names.length) {
    place.append(
      button({ class: "quiet" }, () => {
        const whole = nameList(names, { ...how, isWhole: true });
        whole.tabIndex = -1;
        place.replaceWith(whole);
        whole.focus();
      }, `Show all ${digits(names.length)}`),
    );
  }
  return place;
}

/** @param {string} name @param {Parameters<typeof nameList>[1]} how */
function nameItem(name, { labelOf, actionOf }) {
  const action = actionOf?.(name) ?? null;
  const text = shown(name);
  const label = labelOf(name);
  return element(
    "li",
    {},
    action === null
      ? element("span", { class: "name" }, text)
      : button({ class: "name link" }, action, text),
    label === "" ? null : element("span", { class: "label" }, shown(label)),
  );
}
