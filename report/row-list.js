// A long list whose rows are drawn when they come near the window, and taken away when they are
// far from it.

const ROWS_OF_BLOCK = 50;
/** Of a list of at most so many rows all are drawn, so that the browser's own search finds them. */
const FEW_ROWS = 150;
/** How far from the window rows are drawn. */
const MARGIN = "1200px 0px";

/**
 * Rows that are drawn together, or the room that they take.
 *
 * @template T
 * @typedef {object} Block
 * @property {HTMLElement} place
 * @property {T[]} items
 * @property {number} first place of the first of them
 * @property {boolean} isDrawn
 */

/**
 * Its element has the role of a list, and its rows tell how many there are and which each is,
 * drawn or not.
 *
 * @template T
 */
export class RowList {
  /**
   * @param {HTMLElement} container
   * @param {object} how
   * @param {(item: T) => HTMLElement} how.draw makes a row
   * @param {(item: T) => number} how.height about what a row takes, in pixels
   */
  constructor(container, { draw, height }) {
    this.container = container;
    this.draw = draw;
    this.height = height;
    /** @type {T[]} */
    this.items = [];
    /** @type {Block<T>[]} */
    this.blocks = [];
    /** @type {Map<Element, Block<T>>} */
    this.blockAt = new Map();
    this.observer = new IntersectionObserver((seen) => this.#drawSeen(seen), {
      rootMargin: MARGIN,
    });
    container.setAttribute("role", "list");
  }

  /**
   * Shows these items in place of those before.
   *
   * @param {T[]} items
   */
  show(items) {
    this.observer.disconnect();
    this.blockAt.clear();
    this.items = items;
    this.blocks = [];
    for (let first = 0; first < items.length; first += ROWS_OF_BLOCK) {
      this.#addBlock(items.slice(first, first + ROWS_OF_BLOCK), first);
    }
    this.container.replaceChildren(...this.blocks.map((block) => block.place));
    if (items.length <= FEW_ROWS) {
      this.drawAll();
    } else {
      if (this.blocks.length > 0) this.#draw(this.blocks[0]);
      for (const block of this.blocks) this.observer.observe(block.place);
    }
  }

  /** Draws every row, as for paper. The next call of show ends that. */
  drawAll() {
    this.observer.disconnect();
    for (const block of this.blocks) this.#draw(block);
  }

  /**
   * The row at a place, drawn if it was not.
   *
   * @param {number} index
   * @returns {HTMLElement}
   */
  row(index) {
    const block = this.blocks[Math.floor(index / ROWS_OF_BLOCK)];
    this.#draw(block);
    return /** @type {HTMLElement} */ (block.place.children[index - block.first]);
  }

  /**
   * Draws a row anew.
   *
   * @param {number} index
   */
  redraw(index) {
    const block = this.blocks[Math.floor(index / ROWS_OF_BLOCK)];
    this.row(index).replaceWith(this.#rowOf(block, index - block.first));
  }

  /** @param {T[]} items @param {number} first */
  #addBlock(items, first) {
    const place = document.createElement("div");
    place.setAttribute("role", "presentation");
    /** @type {Block<T>} */
    const block = { place, items, first, isDrawn: false };
    this.#keepRoom(block, items.reduce((height, item) => height + this.height(item), 0));
    this.blocks.push(block);
    this.blockAt.set(place, block);
  }

  /** @param {Block<T>} block @param {number} height */
  #keepRoom(block, height) {
    block.place.style.height = `${height}px`;
  }

  /** @param {Block<T>} block @param {number} at */
  #rowOf(block, at) {
    const row = this.draw(block.items[at]);
    row.setAttribute("role", "listitem");
    row.setAttribute("aria-setsize", String(this.items.length));
    row.setAttribute("aria-posinset", String(block.first + at + 1));
    return row;
  }

  /** @param {Block<T>} block */
  #draw(block) {
    if (block.isDrawn) return;
    block.isDrawn = true;
    block.place.append(...block.items.map((_, at) => this.#rowOf(block, at)));
    block.place.style.height = "";
  }

  /** @param {Block<T>} block */
  #takeAway(block) {
    if (!block.isDrawn || block.place.contains(document.activeElement)) return;
    this.#keepRoom(block, block.place.getBoundingClientRect().height);
    block.isDrawn = false;
    block.place.replaceChildren();
  }

  /** @param {IntersectionObserverEntry[]} seen */
  #drawSeen(seen) {
    for (const { target, isIntersecting } of seen) {
      const block = this.blockAt.get(target);
      if (block === undefined) continue;
      if (isIntersecting) {
        this.#draw(block);
      } else {
        this.#takeAway(block);
      }
    }
  }
}
