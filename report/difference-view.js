// The view of a difference: what changed, searched, filtered and sorted. It knows its data and the
// element that it is shown in, and nothing of the page around it.

import { compareAll, inOrder, titleOf } from "./comparison.js";
import { capitalized, differenceTable } from "./difference-table.js";
import { button, counted, digits, element } from "./elements.js";
import {
  changedVariables,
  hasWords,
  isChosen,
  levelOf,
  messageKinds,
  noCriteria,
  searchText,
  select,
  textOfVariable,
  wordsOf,
} from "./entries.js";
import { Facet } from "./facet.js";
import { headingOf, levelName, messageList } from "./message-list.js";
import { nameList } from "./name-list.js";
import { RowList } from "./row-list.js";
import { rowHeight, variableRow } from "./variable-row.js";

/** @typedef {import("./entries.js").Difference} Difference */
/** @typedef {import("./entries.js").Criteria} Criteria */
/** @typedef {import("./entries.js").Variable} Variable */

/** Of so few changed variables all are open at first. */
const FEW_VARIABLES = 10;
/** How many rows a page key goes. */
const ROWS_OF_PAGE = 10;

/** The lists of names, with what their variables are. */
const NAME_LISTS = /** @type {const} */ ([
  ["added", "Added variables"],
  ["removed", "Removed variables"],
  ["notPaired", "Source variables without a namesake"],
  ["notReached", "Working variables not reached"],
]);

const ORDERS = /** @type {const} */ ([
  ["file", "Order of the file"],
  ["name", "Name"],
  ["changes", "Most changes"],
]);

/**
 * Shows a difference in an element, whose content it replaces.
 *
 * Keys: "/" goes to the search; arrow keys, page keys, Home and End go through the variables, Enter
 * opens and closes one.
 *
 * @param {HTMLElement} container
 * @param {Difference} difference
 * @param {object} [options]
 * @param {Criteria} [options.criteria] what to show at first
 * @param {(criteria: Criteria) => void} [options.onCriteria] called when the user changes them
 * @returns {{close: () => void}} close ends what the view does outside its element
 */
export function showDifference(container, difference, options = {}) {
  const view = new DifferenceView(container, difference, options);
  return { close: () => view.listeners.abort() };
}

/**
 * @typedef {import("./facet.js").Choice} Choice
 *
 * A part of the view: its heading, and how many of its things are shown.
 * @typedef {object} Section
 * @property {HTMLElement} element
 * @property {HTMLElement} body
 * @property {number} total
 * @property {(shown: number) => void} count
 */

class DifferenceView {
  /**
   * @param {HTMLElement} container
   * @param {Difference} difference
   * @param {{criteria?: Criteria, onCriteria?: (criteria: Criteria) => void}} options
   */
  constructor(container, difference, { criteria = noCriteria(), onCriteria = () => {} }) {
    this.difference = difference;
    this.criteria = criteria;
    this.onCriteria = onCriteria;
    this.labels = difference.labels ?? {};
    this.kinds = messageKinds(difference.diagnostics ?? []);
    this.variables = changedVariables(difference, this.kinds);
    this.byName = new Map(this.variables.map((variable) => [variable.name, variable]));
    this.isAllOpen = this.variables.length <= FEW_VARIABLES;
    /** @type {Set<Variable>} those that are not as isAllOpen says */
    this.exceptions = new Set();
    this.current = 0;
    this.isForPaper = false;
    this.narrow = matchMedia("(max-width: 720px)");
    this.listeners = new AbortController();

    /** @type {HTMLElement[]} */
    this.contents = [];
    this.status = element("p", { class: "status", role: "status" });
    this.search = this.#makeSearch();
    this.sections = this.#makeSections();
    const filters = this.#makeFilters();
    container.replaceChildren(
      element("div", { class: "difference" }, filters, element("div", { class: "sections" }, ...this.sections)),
    );
    this.#listen();
    this.update();
    this.#prepareSearch();
  }

  // The parts of the view.

  #makeSearch() {
    const input = /** @type {HTMLInputElement} */ (
      element("input", {
        type: "search",
        id: "difference-search",
        placeholder: "Name, label or any text",
        autocomplete: "off",
        spellcheck: "false",
        "aria-keyshortcuts": "/",
      })
    );
    input.value = this.criteria.search;
    input.addEventListener("input", () => this.change({ search: input.value }));
    return input;
  }

  #makeFilters() {
    const { properties, messages } = this.criteria;
    this.properties = new Facet("Changed in", this.#propertyChoices(), properties, () => this.change({}));
    this.messages = new Facet("Messages", this.#messageChoices(), messages, () => this.change({}));
    this.clear = button({ class: "quiet clear" }, () => this.clearCriteria(), "Show everything again");
    const facets = element(
      "div",
      { class: "facets", id: "difference-facets" },
      this.properties.element,
      this.messages.element,
    );
    const toggle = button(
      { class: "quiet toggle", "aria-expanded": "false", "aria-controls": facets.id },
      () => toggle.setAttribute("aria-expanded", String(facets.classList.toggle("open"))),
      "Filters",
    );
    return element(
      "aside",
      { class: "filters", "aria-label": "Search and filters" },
      element(
        "div",
        { class: "search", role: "search" },
        element("label", { for: this.search.id }, "Search"),
        this.search,
        element("kbd", { "aria-hidden": "true" }, "/"),
        toggle,
      ),
      this.status,
      this.clear,
      element("nav", { "aria-label": "Contents" }, element("ul", { role: "list" }, ...this.contents)),
      facets,
    );
  }

  /** @returns {Choice[]} */
  #propertyChoices() {
    /** @type {Set<string>} */
    const names = new Set();
    for (const { change } of this.variables) {
      for (const property of change.properties) names.add(property);
    }
    return inOrder(names).map((id) => ({ id, title: capitalized(titleOf(id)) }));
  }

  /** @returns {Choice[]} */
  #messageChoices() {
    const levels = [...new Set(this.kinds.map((kind) => kind.isError))];
    const ofLevels = levels.map((isError) => ({
      id: isError ? "error" : "warning",
      title: `All ${levelName(isError).toLowerCase()}s`,
      className: isError ? "error" : "warning",
    }));
    const ofKinds = this.kinds.map((kind) => ({
      id: kind.id,
      title: headingOf(kind),
      className: `kind ${levelOf(kind)}`,
    }));
    return [...(levels.length > 1 ? ofLevels : []), ...ofKinds];
  }

  #makeSections() {
    const { difference } = this;
    /** @type {HTMLElement[]} */
    const sections = [];
    const add = (/** @type {string} */ id, /** @type {string} */ title, /** @type {number} */ total) => {
      const section = this.#makeSection(id, title, total);
      if (total > 0) sections.push(section.element);
      return section;
    };
    this.messageSection = add("messages", "Messages", difference.diagnostics?.length ?? 0);
    this.fileSection = add("file-items", "File-level items", difference.file?.length ?? 0);
    this.variableSection = add("changed", "Changed variables", this.variables.length);
    this.#makeRows();
    this.nameSections = NAME_LISTS.map(([member, title]) => {
      const names = difference[member] ?? [];
      return { section: add(member, title, names.length), names };
    });
    return sections;
  }

  /** @param {string} id @param {string} title @param {number} total @returns {Section} */
  #makeSection(id, title, total) {
    const count = element("span", { class: "count" });
    const countInContents = element("span", { class: "count" });
    const body = element("div", {});
    const heading = element("h2", { id: `${id}-heading`, tabindex: -1 }, title, " ", count);
    const section = element("section", { id, "aria-labelledby": heading.id }, heading, body);
    const link = button({ class: "link" }, () => {
      heading.scrollIntoView();
      heading.focus({ preventScroll: true });
    }, title);
    if (total > 0) this.contents.push(element("li", {}, link, countInContents));
    return {
      element: section,
      body,
      total,
      count: (shown) => {
        const text = shown === total ? digits(total) : `${digits(shown)} of ${digits(total)}`;
        count.textContent = text;
        countInContents.textContent = text;
      },
    };
  }

  #makeRows() {
    const order = /** @type {HTMLSelectElement} */ (
      element(
        "select",
        { id: "difference-order" },
        ...ORDERS.map(([id, title]) => element("option", { value: id }, title)),
      )
    );
    order.value = this.criteria.order;
    order.addEventListener("change", () => {
      this.change({ order: /** @type {Criteria["order"]} */ (order.value) });
    });
    this.order = order;
    this.openAll = button({}, () => this.toggleAll());
    const list = element("div", { class: "variables", "aria-labelledby": "changed-heading" });
    list.addEventListener("keydown", (event) => this.#onListKey(event));
    this.rows = new RowList(list, {
      draw: (variable) => this.#drawRow(variable),
      height: (variable) => rowHeight(variable, this.isOpen(variable), this.narrow.matches),
    });
    this.variableSection?.body.append(
      element(
        "div",
        { class: "tools" },
        element("label", { for: order.id }, "Sort by"),
        order,
        this.openAll,
      ),
      list,
    );
  }

  /** @param {Variable} variable */
  #drawRow(variable) {
    return variableRow(variable, {
      isOpen: this.isForPaper || this.isOpen(variable),
      isCurrent: this.rows?.items[this.current] === variable,
      isWhole: this.isForPaper,
      properties: this.criteria.properties,
      onToggle: () => this.toggle(variable),
    });
  }

  // What is shown.

  /** @param {Variable} variable */
  isOpen(variable) {
    return this.isAllOpen !== this.exceptions.has(variable);
  }

  /** @param {Partial<Criteria>} changed */
  change(changed) {
    Object.assign(this.criteria, changed);
    this.onCriteria(this.criteria);
    this.update();
  }

  clearCriteria() {
    this.properties?.clear();
    this.messages?.clear();
    this.search.value = "";
    this.change({ search: "" });
    this.search.focus();
  }

  /** Shows what meets the criteria. */
  update() {
    const { criteria } = this;
    const words = wordsOf(criteria.search);
    const { chosen, ofProperty } = select(this.variables, criteria);
    this.properties?.count(ofProperty);
    this.#updateMessages(words);
    this.#updateFile(words);
    this.#updateNames(words);
    this.current = 0;
    this.rows?.show(chosen);
    this.variableSection?.count(chosen.length);
    this.#tellOpen();
    const isFiltered = words.length + criteria.properties.size + criteria.messages.size > 0;
    if (this.clear) this.clear.hidden = !isFiltered;
    this.status.textContent = isFiltered
      ? `Shown: ${digits(chosen.length)} of ${counted(this.variables.length, "changed variable")}`
      : `All ${counted(this.variables.length, "changed variable")} shown`;
    this.status.hidden = this.variables.length === 0;
  }

  /** @param {string[]} words */
  #updateMessages(words) {
    const kinds = this.kinds.map((kind) => {
      const { explanations = {} } = this.difference;
      const about = searchText(explanations[kind.text] ?? null);
      const messages = kind.messages.filter(({ message }) =>
        words.every((word) => about.includes(word) || searchText(message).includes(word)),
      );
      return { ...kind, messages };
    });
    const counts = new Map();
    for (const kind of kinds) {
      for (const id of [kind.id, levelOf(kind)]) {
        counts.set(id, (counts.get(id) ?? 0) + kind.messages.length);
      }
    }
    this.messages?.count(counts);
    const chosen = kinds.filter(
      (kind) => kind.messages.length > 0 && isChosen(this.criteria, kind),
    );
    const { messageSection: section } = this;
    section?.body.replaceChildren(
      messageList(chosen, {
        explanations: this.difference.explanations ?? {},
        actionOf: (name) => (this.byName.has(name) ? () => this.goTo(name) : null),
        isWhole: this.isForPaper,
      }),
    );
    section?.count(chosen.reduce((count, { messages }) => count + messages.length, 0));
  }

  /** @param {string[]} words */
  #updateFile(words) {
    const { file = [], fileValues = { old: {}, new: {} } } = this.difference;
    const items = file.filter((item) => {
      const text = searchText(
        titleOf(item),
        [fileValues.old, fileValues.new].map((values) => [values[item], namesIn(values[item])]),
      );
      return hasWords(text, words);
    });
    const comparisons = compareAll(items, fileValues.old, fileValues.new);
    this.fileSection?.body.replaceChildren(
      ...(items.length === 0
        ? []
        : [differenceTable("Changes of the file", comparisons, this.isForPaper)]),
    );
    this.fileSection?.count(items.length);
  }

  /** @param {string[]} words */
  #updateNames(words) {
    const labelOf = (/** @type {string} */ name) => this.labels[name] ?? "";
    for (const { section, names } of this.nameSections ?? []) {
      const chosen =
        words.length === 0
          ? names
          : names.filter((name) => hasWords(searchText(name, labelOf(name)), words));
      section.body.replaceChildren(nameList(chosen, { labelOf, isWhole: this.isForPaper }));
      section.count(chosen.length);
    }
  }

  /** @param {Variable} variable */
  toggle(variable) {
    const { rows } = this;
    if (!rows) return;
    if (!this.exceptions.delete(variable)) this.exceptions.add(variable);
    const index = rows.items.indexOf(variable);
    this.#setCurrent(index);
    rows.redraw(index);
    this.#focusRow(index);
  }

  toggleAll() {
    this.isAllOpen = !this.isAllOpen;
    this.exceptions.clear();
    this.rows?.show(this.rows.items);
    this.#tellOpen();
  }

  #tellOpen() {
    if (this.openAll) this.openAll.textContent = this.isAllOpen ? "Close all" : "Open all";
  }

  /** Opens a variable and goes to it; ends filters that leave it out. @param {string} name */
  goTo(name) {
    const { rows } = this;
    const variable = this.byName.get(name);
    if (!rows || variable === undefined) return;
    if (!rows.items.includes(variable)) this.clearCriteria();
    if (!this.isOpen(variable)) {
      this.toggle(variable);
    } else {
      this.#focusRow(rows.items.indexOf(variable));
    }
  }

  // Keys.

  #listen() {
    const { signal } = this.listeners;
    document.addEventListener("keydown", (event) => this.#onKey(event), { signal });
    window.addEventListener("beforeprint", () => this.#drawForPaper(true), { signal });
    window.addEventListener("afterprint", () => this.#drawForPaper(false), { signal });
  }

  /** @param {KeyboardEvent} event */
  #onKey(event) {
    const { key, target } = event;
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const isTyped = target instanceof HTMLElement && target.matches("input[type=search], select");
    if (key === "/" && !isTyped) {
      event.preventDefault();
      this.search.select();
      this.search.focus();
    } else if (key === "Escape" && target === this.search && this.search.value !== "") {
      event.preventDefault();
      this.search.value = "";
      this.change({ search: "" });
    } else if (key === "ArrowDown" && target === this.search && this.rows?.items.length) {
      event.preventDefault();
      this.#focusRow(0);
    }
  }

  /** @param {KeyboardEvent} event */
  #onListKey(event) {
    const target = /** @type {HTMLElement} */ (event.target);
    if (!target.matches("h3 > button") || event.ctrlKey || event.metaKey || event.altKey) return;
    const last = (this.rows?.items.length ?? 0) - 1;
    const row = target.closest("[role=listitem]");
    const index = Number(row?.getAttribute("aria-posinset")) - 1;
    /** @type {Record<string, number>} */
    const next = {
      ArrowDown: index + 1,
      ArrowUp: index - 1,
      PageDown: index + ROWS_OF_PAGE,
      PageUp: index - ROWS_OF_PAGE,
      Home: 0,
      End: last,
    };
    if (!(event.key in next)) return;
    event.preventDefault();
    this.#focusRow(Math.min(Math.max(next[event.key], 0), last));
  }

  /** @param {number} index */
  #setCurrent(index) {
    const { rows } = this;
    if (!rows) return;
    const was = rows.container.querySelector("h3 > button[tabindex='0']");
    was?.setAttribute("tabindex", "-1");
    this.current = index;
  }

  /** @param {number} index */
  #focusRow(index) {
    this.#setCurrent(index);
    const head = this.rows?.row(index).querySelector("button");
    head?.setAttribute("tabindex", "0");
    head?.focus();
    head?.scrollIntoView({ block: "nearest" });
  }

  // Paper, and work ahead.

  /** @param {boolean} isForPaper */
  #drawForPaper(isForPaper) {
    this.isForPaper = isForPaper;
    this.update();
    if (isForPaper) this.rows?.drawAll();
  }

  /** Makes what a search looks in while nothing else happens. */
  #prepareSearch() {
    const atOnce = 500;
    let next = 0;
    const prepare = () => {
      for (const end = next + atOnce; next < end && next < this.variables.length; ++next) {
        textOfVariable(this.variables[next]);
      }
      if (next < this.variables.length && !this.listeners.signal.aborted) later(prepare);
    };
    later(prepare);
  }
}

/** @param {() => void} work */
function later(work) {
  if ("requestIdleCallback" in window) {
    requestIdleCallback(work);
  } else {
    setTimeout(work);
  }
}

/** The names of attributes. @param {any} value */
function namesIn(value) {
  return value !== null && typeof value === "object" && !Array.isArray(value)
    ? Object.keys(value)
    : [];
}
