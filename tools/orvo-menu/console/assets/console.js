// The device console's page: plain DOM code, no framework. Every request carries the token the
// console printed in its URL's fragment, which the browser never sends to any server.
"use strict";

const token = new URLSearchParams(location.hash.slice(1)).get("token") || "";
const $ = (id) => document.getElementById(id);
let widths = null;

async function api(path, body) {
  const options = { headers: { "X-Console-Token": token } };
  if (body !== undefined) {
    options.method = "POST";
    options.headers["Content-Type"] = "application/json";
    options.body = JSON.stringify(body);
  }
  const response = await fetch(path, options);
  const answer = await response.json();
  if (!response.ok) throw new Error(answer.error || response.statusText);
  return answer;
}

function element(tag, className, text) {
  const node = document.createElement(tag);
  if (className) node.className = className;
  if (text !== undefined) node.textContent = text;
  return node;
}

function applyWidths(stated) {
  widths = stated;
  const style = document.documentElement.style;
  style.setProperty("--title-width", stated.title + "px");
  style.setProperty("--value-width", stated.value + "px");
  style.setProperty("--description-width", stated.description + "px");
}

// ---- menu ----
function renderMenu(menu) {
  if (!widths) applyWidths(menu.widths);
  $("menu-title").textContent = menu.title;
  $("menu-language").textContent = "language " + menu.language;
  $("menu-description").textContent = menu.description;
  $("focused-description").textContent = menu.focusedDescription;
  const list = $("menu-items");
  list.replaceChildren();
  menu.items.forEach((item, index) => {
    const row = element("li", index === menu.selected ? "focused" : "");
    row.dataset.id = item.id;
    row.append(element("span", "item-title", item.title));
    if (item.kind === "toggle") {
      const toggle = element("span", "item-value toggle");
      toggle.append(element("span", "", item.value), element("span", "switch" + (item.on ? " on" : "")));
      row.append(toggle);
    } else if (item.value) {
      row.append(element("span", "item-value", item.value));
    }
    list.append(row);
  });
  for (const id of ["menu-description", "menu-items", "focused-description"]) $(id).hidden = !menu.open;
  $("menu-closed").hidden = menu.open;
  $("status").textContent = menu.status;
  $("language").value = menu.language;
}

// Keys go to the console one after another, in the order they were pressed, as on a remote.
let keyQueue = Promise.resolve();
function press(key) {
  keyQueue = keyQueue.then(() => api("/api/key", { key })).then(renderMenu,
    (error) => ($("status").textContent = error.message));
}

const keyboard = { ArrowUp: "Up", ArrowDown: "Down", Enter: "Enter", i: "Info", Backspace: "Back", Escape: "Back", r: "Refresh" };
document.addEventListener("keydown", (event) => {
  const target = event.target;
  if (target.matches && target.matches("input, select, textarea, button")) return;
  const key = keyboard[event.key];
  if (!key) return;
  event.preventDefault();
  press(key);
});

// ---- device ----
function showMessage(id, text, ok) {
  $(id).textContent = text;
  $(id).className = "message " + (ok ? "ok" : "error");
}

function fillTable(tableId, rows, cells, onPick) {
  const body = $(tableId).tBodies[0];
  body.replaceChildren();
  for (const row of rows) {
    const tr = element("tr", "editable");
    cells(row).forEach((text, i, all) => tr.append(element("td", i === all.length - 1 ? "value" : "", text)));
    tr.addEventListener("click", () => onPick(row));
    body.append(tr);
  }
}

async function loadDevice() {
  const device = await api("/api/device");
  $("device-path").textContent = device.device;
  const language = $("language");
  if (language.options.length !== device.languages.length) {
    language.replaceChildren(...device.languages.map((name) => element("option", "", name)));
  }
  language.value = device.language;
  $("production").checked = device.production;
  $("devkeys").checked = device.developmentKeys;
  $("version-file").value = device.versionFile === null ? "" : device.versionFile;
  $("version-file").placeholder = device.versionFile === null ? "absent" : "";
  fillTable("system-info", device.systemInfo, (e) => [String(e.key), e.label, e.type, e.value], (e) => {
    $("si-key").value = e.key;
    $("si-type").value = e.type;
    $("si-value").value = e.value;
  });
  fillTable("settings", device.settings, (s) => [s.key, s.type, s.value], (s) => {
    $("set-key").value = s.key;
    $("set-type").value = s.type;
    $("set-value").value = s.value;
  });
}

async function change(body, what) {
  try {
    const answer = await api("/api/device", body);
    renderMenu(answer.menu);
    showMessage("device-message", what + ": written", true);
  } catch (error) {
    showMessage("device-message", what + ": " + error.message, false);
  }
  await loadDevice();
}

function wireDevice() {
  $("language").addEventListener("change", (e) => change({ kind: "language", value: e.target.value }, "language"));
  $("production").addEventListener("change", (e) => change({ kind: "production", value: e.target.checked }, "production"));
  $("devkeys").addEventListener("change", (e) => change({ kind: "development-keys", value: e.target.checked }, "development keys"));
  $("version-apply").addEventListener("click", () => change({ kind: "version-file", value: $("version-file").value }, "version file"));
  $("version-remove").addEventListener("click", () => change({ kind: "version-file", value: null }, "version file"));
  $("si-apply").addEventListener("click", () => {
    const key = Number($("si-key").value);
    if ($("si-key").value === "" || !Number.isInteger(key)) return showMessage("device-message", "system-info: the key is a number", false);
    change({ kind: "system-info", key, type: $("si-type").value, value: $("si-value").value }, "system-info." + key);
  });
  $("set-apply").addEventListener("click", () => change(
    { kind: "setting", key: $("set-key").value, type: $("set-type").value, value: $("set-value").value }, $("set-key").value));
}

// ---- log ----
let logCursor = "";
let logQuery = "";
const kMaxLogLines = 2000;

function currentLogQuery() {
  const buffers = [...document.querySelectorAll(".log-buffer:checked")].map((b) => b.value).join(",");
  const query = new URLSearchParams({ buffers, filter: $("log-filter").value, format: $("log-format").value });
  return query.toString();
}

function restartLog() {
  logCursor = "";
  $("log-lines").replaceChildren();
}

async function pollLog() {
  const query = currentLogQuery();
  if (query !== logQuery) {
    logQuery = query;
    restartLog();
  }
  try {
    const answer = await api("/api/log?" + query + "&cursor=" + encodeURIComponent(logCursor));
    logCursor = answer.cursor;
    const lines = $("log-lines");
    const atBottom = lines.scrollTop + lines.clientHeight >= lines.scrollHeight - 4;
    for (const record of answer.records) {
      lines.append(element("div", "log-line p-" + record.priority, record.text));
    }
    while (lines.childElementCount > kMaxLogLines) lines.firstElementChild.remove();
    if (atBottom) lines.scrollTop = lines.scrollHeight;
    $("log-message").textContent = "";
    $("connection").textContent = "connected";
  } catch (error) {
    showMessage("log-message", error.message, false);
    if (error instanceof TypeError) $("connection").textContent = "console not reachable";
  }
  setTimeout(pollLog, 400);
}

// ---- localisation ----
// Texts are measured with the menu's own font against the widths the menu lays them out in.
function textWidth(text, font) {
  const canvas = textWidth.canvas || (textWidth.canvas = document.createElement("canvas"));
  const context = canvas.getContext("2d");
  context.font = font;
  return Math.ceil(context.measureText(text).width);
}

function descriptionLines(text) {
  const probe = element("div", "tv-description", text);
  Object.assign(probe.style, { position: "absolute", visibility: "hidden", width: widths.description + "px", margin: 0 });
  $("tv").append(probe);
  const lineHeight = parseFloat(getComputedStyle(probe).lineHeight);
  const lines = Math.round(probe.getBoundingClientRect().height / lineHeight);
  probe.remove();
  return lines;
}

function overflow(field, text) {
  const font = getComputedStyle($("tv")).font;
  if (field === "description") {
    const lines = descriptionLines(text);
    return lines > widths.descriptionLines ? lines + " lines, area holds " + widths.descriptionLines : "";
  }
  const width = textWidth(text, font);
  return width > widths[field] ? width + " px, area " + widths[field] + " px" : "";
}

async function loadLocalisation() {
  const view = await api("/api/localisation");
  applyWidths(view.widths);
  $("l10n-widths").textContent = "measured with the menu's font: title " + view.widths.title + " px, value " +
    view.widths.value + " px, description " + view.widths.description + " px × " + view.widths.descriptionLines + " lines";
  const table = $("l10n-table");
  table.replaceChildren();
  const head = element("tr");
  head.append(element("th", "", "item"), element("th", "", "field"), ...view.languages.map((l) => element("th", "", l)));
  table.append(head);
  for (const row of view.rows) {
    const tr = element("tr");
    tr.append(element("td", "", row.id), element("td", "", row.field));
    row.texts.forEach((entry) => {
      const td = element("td", "", entry ? entry.text : "");
      const wide = entry ? overflow(row.field, entry.text) : "";
      if (entry && entry.rawId) {
        td.classList.add("flag-raw");
        td.append(element("span", "flag-note", "untranslated: raw message id"));
      }
      if (wide) {
        td.classList.add("flag-wide");
        td.append(element("span", "flag-note", "too wide: " + wide));
      }
      tr.append(td);
    });
    table.append(tr);
  }
}

// ---- start ----
document.querySelectorAll(".remote button").forEach((b) => b.addEventListener("click", () => press(b.dataset.key)));
$("log-clear").addEventListener("click", () => $("log-lines").replaceChildren());
$("l10n-load").addEventListener("click", () => loadLocalisation().catch((e) => showMessage("log-message", e.message, false)));
wireDevice();
api("/api/menu").then(renderMenu).catch((e) => ($("status").textContent = e.message));
loadDevice().catch((e) => showMessage("device-message", e.message, false));
pollLog();
$("tv").focus();
