// The report of a run: what was run on which files and what came of it, around the view of the
// difference.

import { isError, noCriteria } from "./entries.js";
import { counted, digits, element, shown, sizeText } from "./elements.js";
import { showDifference } from "./difference-view.js";

/** @typedef {import("./entries.js").Criteria} Criteria */

/**
 * What the program puts into the page: the outcome of the run, and where it comes from.
 *
 * @typedef {import("./entries.js").Difference & {
 *   program: string,
 *   date: string,
 *   commands: string,
 *   isRefused: boolean,
 *   written: string | null,
 *   files: File[],
 * }} Report
 *
 * @typedef {object} File
 * @property {string} role
 * @property {string} path
 * @property {string | null} modified
 * @property {number | null} bytes
 * @property {number | null} variables
 * @property {string[]} dataFiles IDs of those in a codebook that has several
 * @property {string} dataFile the one of the run
 */

/** @param {string} path */
function fileName(path) {
  return path.slice(path.lastIndexOf("/") + 1);
}

/** A time as "2026-11-23T16:57:03+01:00", for people. @param {string} time */
function timeElement(time) {
  const [, day, minute] = /^(.*)T(\d+:\d+)/.exec(time) ?? ["", time, ""];
  return element("time", { datetime: time, title: time }, `${day} ${minute}`);
}

/** @param {Report} report */
function isUnchanged({ changed, added = [], file = [] }) {
  return changed.length + added.length + file.length === 0;
}

/** @param {Report} report */
function headline(report) {
  const { changed, added = [], file = [], files, isRefused } = report;
  const working = shown(fileName(files.find(({ role }) => role === "working")?.path ?? ""));
  if (isRefused) return element("h1", {}, "Nothing was changed in ", working);
  if (isUnchanged(report)) return element("h1", {}, "Nothing to change in ", working);
  const parts = [
    changed.length > 0 ? counted(changed.length, "changed variable") : "",
    added.length > 0 ? counted(added.length, "added variable") : "",
    file.length > 0 ? counted(file.length, "file-level item") : "",
  ].filter(Boolean);
  const last = parts.pop();
  const list = parts.length === 0 ? last : `${parts.join(", ")} and ${last}`;
  return element("h1", {}, `${list} in `, working);
}

/** @param {Report} report */
function outcome(report) {
  const { diagnostics = [], isRefused, written } = report;
  if (isRefused) {
    const error = diagnostics.find(isError);
    return element(
      "p",
      { class: "outcome refused" },
      element("strong", {}, "Nothing was written. "),
      shown(error?.message ?? "An error was reported."),
    );
  }
  if (written === null) {
    return element(
      "p",
      { class: "outcome" },
      element("strong", {}, "Dry run. "),
      isUnchanged(report) ? "" : "This is what would change. ",
      "Nothing was written.",
    );
  }
  return element("p", { class: "outcome" }, element("strong", {}, "Written "), "to ", written === "-" ? "standard output" : shown(written));
}

/** @param {string} id of a data file */
function idText(id) {
  return id === "" ? "(no ID)" : id;
}

/** @param {File} file */
function fileRow({ role, path, modified, bytes, variables, dataFiles, dataFile }) {
  const several = element(
    "div",
    {},
    "Data file ",
    shown(idText(dataFile)),
    " of ",
    shown(dataFiles.map(idText).join(", ")),
  );
  return element(
    "tr",
    {},
    element("th", { scope: "row" }, role.charAt(0).toUpperCase() + role.slice(1)),
    element("td", { class: "path" }, shown(path), dataFiles.length > 1 ? several : null),
    element("td", {}, modified === null ? "–" : timeElement(modified)),
    element("td", { class: "number" }, bytes === null ? "–" : sizeText(bytes)),
    element("td", { class: "number" }, variables === null ? "–" : digits(variables)),
  );
}

/** @param {File[]} files */
function fileTable(files) {
  const heads = [
    ["Role", ""],
    ["File", ""],
    ["Modified", ""],
    ["Size", "number"],
    ["Variables", "number"],
  ];
  return element(
    "table",
    { class: "files" },
    element("caption", { class: "aside" }, "Files"),
    element(
      "thead",
      {},
      element(
        "tr",
        {},
        ...heads.map(([head, kind]) => element("th", { scope: "col", class: kind || null }, head)),
      ),
    ),
    element("tbody", {}, ...files.map(fileRow)),
  );
}

/** @param {Report} report */
function showRun(report) {
  const header = /** @type {HTMLElement} */ (document.getElementById("run"));
  header.append(
    element("p", { class: "kicker" }, "Apply Dictionary · ", timeElement(report.date)),
    headline(report),
    outcome(report),
    element(
      "div",
      { class: "facts" },
      element(
        "section",
        { "aria-labelledby": "command-heading" },
        element("h2", { id: "command-heading" }, "Command"),
        element("pre", { tabindex: 0 }, element("code", {}, shown(report.commands.trim()))),
      ),
      element(
        "section",
        { "aria-labelledby": "files-heading" },
        element("h2", { id: "files-heading" }, "Files"),
        fileTable(report.files),
      ),
    ),
  );
  const footer = /** @type {HTMLElement} */ (document.getElementById("origin"));
  footer.append(`Made by ${report.program} on `, timeElement(report.date), ".");
  document.title = header.querySelector("h1")?.textContent ?? document.title;
}

// What is shown stands in the address, so that it can be kept and handed on.

/** @returns {Criteria} */
function criteriaOfAddress() {
  const criteria = noCriteria();
  const parameters = new URLSearchParams(location.hash.slice(1));
  const setOf = (/** @type {string} */ name) =>
    new Set((parameters.get(name) ?? "").split(",").filter(Boolean));
  const order = parameters.get("sort");
  return {
    search: parameters.get("search") ?? "",
    properties: setOf("properties"),
    messages: setOf("messages"),
    order: order === "name" || order === "changes" ? order : criteria.order,
  };
}

/** @param {Criteria} criteria */
function putIntoAddress({ search, properties, messages, order }) {
  const parameters = new URLSearchParams();
  if (search !== "") parameters.set("search", search);
  if (properties.size > 0) parameters.set("properties", [...properties].join(","));
  if (messages.size > 0) parameters.set("messages", [...messages].join(","));
  if (order !== "file") parameters.set("sort", order);
  history.replaceState(null, "", `#${parameters}`);
}

/** @type {Report} */
const report = JSON.parse(document.getElementById("data")?.textContent ?? "");
showRun(report);
showDifference(/** @type {HTMLElement} */ (document.getElementById("difference")), report, {
  criteria: criteriaOfAddress(),
  onCriteria: putIntoAddress,
});
