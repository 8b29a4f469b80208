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
import { VariableList } from "./variable-list.js";

/** @typedef {import("./entries.js").Criteria} Criteria */
/** @typedef {import("./entries.js").Difference} Difference */
/** @typedef {import("./entries.js").MessageKind} MessageKind */
/** @typedef {import("./entries.js").Variable} Variable */
/** @typedef {import("./facet.js").Choice} Choice */

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

/** Of how many variables the text for searches is made at once, when nothing else happens. */
const TEXTS_AT_ONCE = 500;

/**
 * Shows a difference in an element, whose content it replaces.
 *
 * Keys: "/" goes to the search; arrow keys, page keys, Home and End go through the variables, Enter
 * opens and closes one. Before it is printed, all that meets the criteria is drawn and opened.
 *
 * @param {HTMLElement} container
 * @param {Difference} difference
 * @param {object} [options]
 * @param {Criteria} [options.criteria] what to show at first
 * @param {(criteria: Criteria) => void} [options.onCriteria] called when the user changes them
 * @returns {{close: () => void}} close ends what the view does outside its element
 */
export function showDifference(container, difference, options = {}) {
  const { criteria = noCriteria(), onCriteria = () => {} } = options;
  const view = new DifferenceView(difference, criteria, onCriteria);
  container.replaceChildren(view.element);
  return { close: () => view.listeners.abort() };
}

class DifferenceView {
  /**
   * @param {Difference} difference
   * @param {Criteria} criteria
   * @param {(criteria: Criteria) => void} onCriteria
   */
  constructor(difference, criteria, onCriteria) {
    this.difference = difference;
    this.criteria = criteria;
    this.onCriteria = onCriteria;
    this.kinds = messageKinds(difference.diagnostics ?? []);
    this.variables = changedVariables(difference, this.kinds);
    this.byName = new Map(this.variables.map((variable) => [variable.name, variable]));
    this.isForPaper = false;

    this.search = this.#makeSearch();
    this.status = element("p", { class: "status", role: "status" });
    this.clear = button({ class: "quiet" }, () => this.#clearCriteria(), "Show everything again");
    const changed = () => this.#change({});
    this.properties = new Facet("Changed in", this.#propertyChoices(), criteria.properties, changed);
    this.messages = new Facet("Messages", this.#messageChoices(), criteria.messages, changed);

    const { diagnostics = [], file = [] } = difference;
    this.messageSection = new Section("messages", "Messages", diagnostics.length);
    this.fileSection = new Section("file-items", "File-level items", file.length);
    this.variableSection = new Section("changed", "Changed variables", this.variables.length);
    this.nameSections = NAME_LISTS.map(([member, title]) => {
      const names = difference[member] ?? [];
      return { names, section: new Section(member, title, names.length) };
    });
    this.list = new VariableList(this.variables.length, { "aria-labelledby": "changed-heading" });
    this.openAll = button({}, () => this.#toggleAll());
    this.nothing = nothing();
    this.variableSection.body.append(this.#makeTools(), this.list.element, this.nothing);
    this.element = this.#arrange();

    this.listeners = new AbortController();
    this.#listen();
    this.#update();
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
    input.addEventListener("input", () => this.#change({ search: input.value }));
    return input;
  }

  /** @returns {Choice[]} */
  #propertyChoices() {
    const names = new Set(this.difference.changed.flatMap(({ properties }) => properties));
    return inOrder(names).map((id) => ({ id, title: capitalized(titleOf(id)) }));
  }

  /** @returns {Choice[]} */
  #messageChoices() {
    const levels = [...new Set(this.kinds.map((kind) => kind.isError))];
    const ofLevels = levels.map((isError) => ({
      id: isError ? "error" : "warning",
      title: `All ${levelName(isError).toLowerCase()}s`,
    }));
    const ofKinds = this.kinds.map((kind) => ({ id: kind.id, title: headingOf(kind) }));
    return [...(levels.length > 1 ? ofLevels : []), ...ofKinds];
  }

  #makeTools() {
    const order = /** @type {HTMLSelectElement} */ (
      element(
        "select",
        { id: "difference-order" },
        ...ORDERS.map(([id, title]) => element("option", { value: id }, title)),
      )
    );
    order.value = this.criteria.order;
    order.addEventListener("change", () => {
      this.#change({ order: /** @type {Criteria["order"]} */ (order.value) });
    });
    const label = element("label", { for: order.id }, "Sort by");
    return element("div", { class: "tools" }, label, order, this.openAll);
  }

  #arrange() {
    const sections = [
      this.messageSection,
      this.fileSection,
      this.variableSection,
      ...this.nameSections.map(({ section }) => section),
    ].filter(({ total }) => total > 0);
    const links = sections.map((section) => section.link);
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
    const filters = element(
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
      element("nav", { "aria-label": "Contents" }, element("ul", { role: "list" }, ...links)),
      facets,
    );
    const parts = sections.map((section) => section.element);
    return element(
      "div",
      { class: "difference" },
      filters,
      element("div", { class: "sections" }, ...parts),
    );
  }

  // What is shown.

  /** @param {Partial<Criteria>} changed */
  #change(changed) {
    Object.assign(this.criteria, changed);
    this.onCriteria(this.criteria);
    this.#update();
  }

  #clearCriteria() {
    this.properties.clear();
    this.messages.clear();
    this.search.value = "";
    this.search.focus();
    this.#change({ search: "" });
  }

  #update() {
    const words = wordsOf(this.criteria.search);
    this.#updateMessages(words);
    this.#updateFile(words);
    this.#updateNames(words);
    this.#updateVariables(words);
  }

  /** @param {string[]} words */
  #updateVariables(words) {
    const { criteria, variables } = this;
    const { chosen, ofProperty } = select(variables, criteria);
    this.properties.count(ofProperty);
    this.list.show(chosen, criteria.properties);
    this.nothing.hidden = chosen.length > 0;
    this.variableSection.count(chosen.length);
    this.#tellOpen();
    const isFiltered = words.length + criteria.properties.size + criteria.messages.size > 0;
    const all = counted(variables.length, "changed variable");
    this.clear.hidden = !isFiltered;
    this.status.hidden = variables.length === 0;
    this.status.textContent = isFiltered
      ? `${digits(chosen.length)} of ${all} shown`
      : `${all}, all shown`;
  }

  /** @param {string[]} words */
  #updateMessages(words) {
    const { explanations = {} } = this.difference;
    const found = this.kinds.map((kind) => {
      const about = searchText(explanations[kind.text] ?? null);
      const messages = kind.messages.filter(({ message, advice }) =>
        hasWords(`${about}\n${searchText(message, advice ?? "")}`, words),
      );
      return { ...kind, messages };
    });
    const counts = new Map();
    for (const kind of found) {
      for (const id of [kind.id, levelOf(kind)]) {
        counts.set(id, (counts.get(id) ?? 0) + kind.messages.length);
      }
    }
    this.messages.count(counts);
    const chosen = found.filter(
      (kind) => kind.messages.length > 0 && isChosen(this.criteria, kind),
    );
    this.messageSection.show(
      chosen.reduce((count, { messages }) => count + messages.length, 0),
      () =>
        messageList(chosen, {
          explanations,
          actionOf: (name) => this.#goToAction(name),
          isWhole: this.isForPaper,
        }),
    );
  }

  /** @param {string[]} words */
  #updateFile(words) {
    const { file = [], fileValues = { old: {}, new: {} } } = this.difference;
    const items = file.filter((item) => {
      const values = [fileValues.old[item], fileValues.new[item]];
      return hasWords(searchText(titleOf(item), values, values.map(namesIn)), words);
    });
    this.fileSection.show(items.length, () => {
      const comparisons = compareAll(items, fileValues.old, fileValues.new);
      return differenceTable("Changes of the file", comparisons, this.isForPaper);
    });
  }

  /** @param {string[]} words */
  #updateNames(words) {
    const labels = this.difference.labels ?? {};
    const labelOf = (/** @type {string} */ name) => labels[name] ?? "";
    for (const { section, names } of this.nameSections) {
      const chosen =
        words.length === 0
          ? names
          : names.filter((name) => hasWords(searchText(name, labelOf(name)), words));
      section.show(chosen.length, () => nameList(chosen, { labelOf, isWhole: this.isForPaper }));
    }
  }

  #toggleAll() {
    this.list.toggleAll();
    this.#tellOpen();
  }

  #tellOpen() {
    this.openAll.textContent = this.list.isAllOpen ? "Close all" : "Open all";
  }

  /**
   * What goes to a changed variable; it ends filters that leave the variable out. Null: the name is
   * that of no changed variable.
   *
   * @param {string} name
   */
  #goToAction(name) {
    const variable = this.byName.get(name);
    if (variable === undefined) return null;
    return () => {
      if (this.list.goTo(variable)) return;
      this.#clearCriteria();
      this.list.goTo(variable);
    };
  }

  // Keys, paper, and work ahead.

  #listen() {
    const { signal } = this.listeners;
    document.addEventListener("keydown", (event) => this.#onKey(event), { signal });
    addEventListener("beforeprint", () => this.#drawForPaper(true), { signal });
    addEventListener("afterprint", () => this.#drawForPaper(false), { signal });
  }

  /** @param {KeyboardEvent} event */
  #onKey(event) {
    const { key, target } = event;
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const isTyped = target instanceof HTMLElement && target.matches("input[type=search], select");
    if (key === "/" && !isTyped) {
      event.preventDefault();
      this.search.focus();
      this.search.select();
    } else if (key === "Escape" && target === this.search) {
      event.preventDefault();
      this.search.value = "";
      this.#change({ search: "" });
    } else if (key === "ArrowDown" && target === this.search) {
      event.preventDefault();
      this.list.focus(0);
    }
  }

  /** @param {boolean} isForPaper */
  #drawForPaper(isForPaper) {
    this.isForPaper = isForPaper;
    this.list.isForPaper = isForPaper;
    this.#update();
  }

  #prepareSearch() {
    let next = 0;
    const prepare = () => {
      for (const end = next + TEXTS_AT_ONCE; next < end && next < this.variables.length; ++next) {
        textOfVariable(this.variables[next]);
      }
      if (next < this.variables.length && !this.listeners.signal.aborted) later(prepare);
    };
    later(prepare);
  }
}

/** A part of the view, with a link to it: its title, and how many of its things are shown. */
class Section {
  /**
   * @param {string} id
   * @param {string} title
   * @param {number} total
   */
  constructor(id, title, total) {
    this.total = total;
    this.counts = [element("span", { class: "count" }), element("span", { class: "count" })];
    this.body = element("div", {});
    const heading = element("h2", { id: `${id}-heading`, tabindex: -1 }, `${title} `, this.counts[0]);
    this.element = element("section", { id, "aria-labelledby": heading.id }, heading, this.body);
    const goTo = () => {
      heading.scrollIntoView();
      heading.focus({ preventScroll: true });
    };
    this.link = element("li", {}, button({ class: "link" }, goTo, title), this.counts[1]);
  }

  /** @param {number} shown */
  count(shown) {
    const text = shown === this.total ? digits(shown) : `${digits(shown)} of ${digits(this.total)}`;
    for (const count of this.counts) count.textContent = text;
  }

  /**
   * Shows so many of its things.
   *
   * @param {number} shown
   * @param {() => HTMLElement} draw called if there are any
   */
  show(shown, draw) {
    this.count(shown);
    this.body.replaceChildren(shown === 0 ? nothing() : draw());
  }
}

/** What stands in the place of things that the search and the filters leave out. */
function nothing() {
  return element("p", { class: "nothing" }, "Nothing meets the search and the filters.");
}

/** @param {() => void} work */
function later(work) {
  if ("requestIdleCallback" in window) {
    requestIdleCallback(work);
  } else {
    setTimeout(work);
  }
}

/** The names of the members of an object. @param {any} value */
function namesIn(value) {
  const isObject = value !== null && typeof value === "object" && !Array.isArray(value);
  return isObject ? Object.keys(value) : [];
}
