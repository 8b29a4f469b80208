// The changed variables as a list that is gone through by keys, each open or closed.

import { RowList } from "./row-list.js";
import { rowHeight, variableRow } from "./variable-row.js";

/** @typedef {import("./entries.js").Variable} Variable */

/** Of so few variables all are open at first. */
const FEW_VARIABLES = 10;
/** How many rows a page key goes. */
const ROWS_OF_PAGE = 10;

/** What the buttons of the rows are. */
const HEAD = "h3 > button";

export class VariableList {
  /**
   * @param {number} count of all variables
   * @param {Record<string, string>} attributes of the list's element
   */
  constructor(count, attributes) {
    this.element = document.createElement("div");
    this.element.className = "variables";
    for (const [name, value] of Object.entries(attributes)) this.element.setAttribute(name, value);
    this.element.addEventListener("keydown", (event) => this.#onKey(event));
    this.isAllOpen = count <= FEW_VARIABLES;
    /** @type {Set<Variable>} those that are not as isAllOpen says */
    this.exceptions = new Set();
    /** @type {Set<string>} */
    this.properties = new Set();
    this.isForPaper = false;
    /** @type {Variable | undefined} the one that the tabulator key comes to */
    this.current = undefined;
    this.narrow = matchMedia("(max-width: 720px)");
    /** @type {RowList<Variable>} */
    this.rows = new RowList(this.element, {
      draw: (variable) => this.#draw(variable),
      height: (variable) => rowHeight(variable, this.isOpen(variable), this.narrow.matches),
    });
  }

  /**
   * Shows these variables, in this order.
   *
   * @param {Variable[]} variables
   * @param {Set<string>} properties those that are shown of an open one; empty for all
   */
  show(variables, properties) {
    this.properties = properties;
    this.current = variables[0];
    this.rows.show(variables);
    if (this.isForPaper) this.rows.drawAll();
  }

  /** @param {Variable} variable */
  isOpen(variable) {
    return this.isForPaper || this.isAllOpen !== this.exceptions.has(variable);
  }

  /** Opens all variables, or closes them. */
  toggleAll() {
    this.isAllOpen = !this.isAllOpen;
    this.exceptions.clear();
    this.show(this.rows.items, this.properties);
  }

  /**
   * Opens a variable and goes to it. False: it is not shown.
   *
   * @param {Variable} variable
   */
  goTo(variable) {
    const index = this.rows.items.indexOf(variable);
    if (index < 0) return false;
    if (!this.isOpen(variable)) this.#toggle(variable);
    this.focus(index);
    return true;
  }

  /**
   * Goes to a row; nothing happens if there is none.
   *
   * @param {number} index from 0
   */
  focus(index) {
    const { items } = this.rows;
    if (items.length === 0) return;
    const next = Math.min(Math.max(index, 0), items.length - 1);
    this.element.querySelector(`${HEAD}[tabindex="0"]`)?.setAttribute("tabindex", "-1");
    this.current = items[next];
    const head = /** @type {HTMLElement} */ (this.rows.row(next).querySelector(HEAD));
    head.tabIndex = 0;
    head.focus();
    head.scrollIntoView({ block: "nearest" });
  }

  /** @param {Variable} variable */
  #draw(variable) {
    return variableRow(variable, {
      isOpen: this.isOpen(variable),
      isCurrent: this.current === variable,
      isWhole: this.isForPaper,
      properties: this.properties,
      onToggle: () => {
        this.#toggle(variable);
        this.focus(this.rows.items.indexOf(variable));
      },
    });
  }

  /** @param {Variable} variable */
  #toggle(variable) {
    if (!this.exceptions.delete(variable)) this.exceptions.add(variable);
    this.rows.redraw(this.rows.items.indexOf(variable));
  }

  /** @param {KeyboardEvent} event */
  #onKey(event) {
    const target = /** @type {HTMLElement} */ (event.target);
    if (!target.matches(HEAD) || event.ctrlKey || event.metaKey || event.altKey) return;
    const row = target.closest("[role=listitem]");
    const index = Number(row?.getAttribute("aria-posinset")) - 1;
    const next = new Map([
      ["ArrowDown", index + 1],
      ["ArrowUp", index - 1],
      ["PageDown", index + ROWS_OF_PAGE],
      ["PageUp", index - ROWS_OF_PAGE],
      ["Home", 0],
      ["End", this.rows.items.length - 1],
    ]).get(event.key);
    if (next === undefined) return;
    event.preventDefault();
    this.focus(next);
  }
}
