"use strict";
const data = JSON.parse(document.getElementById("data").textContent);
const byId = id => document.getElementById(id);
const gallery = byId("gallery");
const search = byId("search");
const sort = byId("sort");
const everyLauncher = null;
let launcher = everyLauncher;

// Everything shown comes from a registry that anybody may have written: texts become text nodes, never markup.
function element(tag, className, text) {
  const made = document.createElement(tag);
  if (className) made.className = className;
  if (text !== undefined) made.textContent = text;
  return made;
}

// A text that breaks behind its slashes, but not within the head of a path: "C:\", "\\", "steam://". The breaks
// are elements, so that what is copied is the plain text.
function breakable(tag, className, text) {
  const made = element(tag, className);
  for (const piece of text.split(/(?<=[^:\\/][\\/])/)) made.append(piece, document.createElement("wbr"));
  made.lastChild?.remove();
  return made;
}

// Texts are found without their accents and in any letter case. Upper case is the one to compare: a final sigma
// has no capital of its own, and a sharp s is written with two letters.
function folded(text) {
  return text.replace(/[\u00ae\u00a9\u2122\u2120]/g, "").normalize("NFKD").replace(/\p{Mn}/gu, "").toUpperCase();
}

function hueOf(text) {
  let sum = 0;
  for (const letter of text) sum = (sum * 31 + letter.codePointAt(0)) >>> 0;
  return sum % 360;
}

function letterTile(item) {
  const first = /[\p{L}\p{N}]/u.exec(item.name);
  const tile = element("div", "icon letter", (first ? first[0] : "?").toUpperCase());
  tile.setAttribute("aria-hidden", "true");
  tile.style.setProperty("--hue", hueOf(item.name));
  return tile;
}

function icon(item) {
  if (!item.icon.startsWith("data:image/png;base64,")) return letterTile(item);
  const image = element("img", "icon");
  image.loading = "lazy";
  image.decoding = "async";
  image.width = image.height = data.iconSize;
  image.alt = "";
  image.addEventListener("error", () => image.replaceWith(letterTile(item)));
  image.src = item.icon;
  return image;
}

// Schemes that run script in this page, and those that browsers hand to no program, are plain text.
function launch(item) {
  if (!item.launch) return [];
  if (/^\s*(javascript|data|vbscript|file|blob|shell):/i.test(item.launch)) return [breakable("div", "path", item.launch)];
  const link = element("a", "launch", "Launch");
  link.href = item.launch;
  link.title = item.launch;
  link.setAttribute("aria-label", `Launch ${item.name}`);
  return [link];
}

function origin(item) {
  const made = element("div", "origin");
  if (item.group) made.append(element("span", data.launchers ? "group badge" : "group", item.group));
  if (item.detail) made.append(element("span", "detail", item.detail));
  return made.firstChild ? [made] : [];
}

function card(item) {
  const made = element("li", "card");
  const texts = element("div", "texts");
  texts.append(element("h2", "name", item.name || "(no name)"), ...origin(item));
  if (item.path) texts.append(breakable("div", "path", item.path));
  texts.append(...launch(item));
  made.append(icon(item), texts);
  return made;
}

// What stands in the gallery: an item, its card, and its texts as the search sees them.
const entries = data.items.map(item =>
  ({item, card: card(item), text: folded([item.name, item.group, item.detail, item.path].join("\n"))}));

// Sorting is stable: items of one launcher, publisher or size stay in the order of their names.
const collator = new Intl.Collator(undefined, {numeric: true});
const byName = (a, b) => collator.compare(a.item.name, b.item.name);
const byGroup = (a, b) => !a.item.group - !b.item.group || collator.compare(a.item.group, b.item.group);
const bySize = (a, b) => b.item.size - a.item.size;
const orders = data.launchers ? {Name: byName, Launcher: byGroup} : {Name: byName, Publisher: byGroup, Size: bySize};

function arrange() {
  const cards = document.createDocumentFragment();
  for (const entry of [...entries].sort(byName).sort(orders[sort.value])) cards.append(entry.card);
  gallery.append(cards);
}

function isOf(entry, name) {
  return name === everyLauncher || entry.item.group === name;
}

function showCounts(found) {
  const all = entries.length;
  const count = entries.filter(entry => !entry.card.hidden).length;
  byId("count").textContent = count === all ? `${all} found` : `${count} of ${all}`;
  byId("none").textContent = all ? "Nothing matches." : `No ${data.title.toLowerCase()} found.`;
  byId("none").hidden = count > 0;
  for (const button of byId("launchers").children) {
    const of = found.filter(entry => isOf(entry, button.launcher));
    button.lastChild.textContent = of.length;
    button.classList.toggle("empty", of.length === 0);
    button.setAttribute("aria-pressed", button.launcher === launcher);
  }
}

// The counts of the launchers are those of the search, whichever of them is chosen.
function filter() {
  const words = folded(search.value).split(/\s+/).filter(Boolean);
  const found = entries.filter(entry => words.every(word => entry.text.includes(word)));
  const visible = new Set(found.filter(entry => isOf(entry, launcher)));
  for (const entry of entries) {
    if (entry.card.hidden === visible.has(entry)) entry.card.hidden = !entry.card.hidden;
  }
  showCounts(found);
}

function launcherButton(name) {
  const button = element("button", "launcher");
  button.type = "button";
  button.launcher = name;
  const count = element("b");
  // Room for the largest count, so that nothing moves while somebody types.
  count.style.minWidth = `${String(entries.filter(entry => isOf(entry, name)).length).length}ch`;
  button.append(element("span", "", name ?? "All"), " ", count);
  button.addEventListener("click", () => {
    launcher = name;
    filter();
  });
  return button;
}

function offerLaunchers() {
  const names = [...new Set(data.items.map(item => item.group))].sort(collator.compare);
  if (!data.launchers || names.length < 2) return;
  byId("launchers").append(...[everyLauncher, ...names].map(launcherButton));
  byId("launchers").hidden = false;
}

function cell(className, content) {
  const made = element("td", className);
  made.append(content);
  return made;
}

// The lines are made when somebody wants to read them: a large scan has tens of thousands.
function log(lines) {
  const made = element("details", "log");
  made.append(element("summary", "", lines.length === 1 ? "1 log line" : `${lines.length} log lines`));
  made.addEventListener("toggle", () => {
    const list = element("ol");
    list.append(...lines.map(line => breakable("li", "", line)));
    made.append(list);
  }, {once: true});
  return made;
}

function strategyRow(strategy) {
  const row = element("tr");
  const name = cell("strategy", element("div", "title", strategy.name));
  if (strategy.lines.length) name.append(log(strategy.lines));
  row.append(cell("number level", strategy.level), name, cell("number time", `${strategy.milliseconds.toFixed(1)} ms`),
             cell(strategy.found ? "number found" : "number found nothing", strategy.found));
  return row;
}

function report() {
  if (!data.report) return;
  const {catalogue, raw, unique, strategies, notes = []} = data.report;
  byId("notes").append(...notes.map(note => breakable("li", "", note)));
  byId("notes").hidden = notes.length === 0;
  byId("totals").textContent =
    `${catalogue.toLocaleString("en")} games in the catalogue, ${raw} results, ${unique} after merging.`;
  byId("strategies").append(...strategies.map(strategyRow));
  byId("report").hidden = false;
}

document.title = `${data.title} \u2013 Tarnwick`;
document.documentElement.style.setProperty("--icon", `${data.iconSize}px`);
document.body.classList.toggle("large", data.iconSize > 96);
byId("title").textContent = data.title;
sort.append(...Object.keys(orders).map(name => new Option(name)));
offerLaunchers();
arrange();
filter();
report();
search.addEventListener("input", filter);
sort.addEventListener("change", arrange);
document.addEventListener("keydown", event => {
  if (event.key !== "Escape" || !search.value) return;
  search.value = "";
  search.focus();
  filter();
});
