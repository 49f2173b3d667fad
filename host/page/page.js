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

function explainButton(item) {
  const button = element("button", "explain", "Explain");
  button.type = "button";
  button.setAttribute("aria-haspopup", "dialog");
  button.setAttribute("aria-label", `Explain ${item.name}`);
  return button;
}

function origin(item) {
  const made = element("div", "origin");
  if (item.group) made.append(element("span", data.launchers ? "group badge" : "group", item.group));
  if (item.detail) made.append(element("span", "detail", item.detail));
  if (item.explanation) made.append(explainButton(item));
  return made.firstChild ? [made] : [];
}

function card(item) {
  const made = element("li", item.explanation ? "card opens" : "card");
  made.item = item;
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

function counted(count, one, many) {
  return `${count.toLocaleString("en")} ${count === 1 ? one : many}`;
}

// What is folded is made when somebody wants to read it: a large scan has tens of thousands of lines.
function foldable(className, summary, make) {
  const made = element("details", className);
  const head = element("summary");
  head.append(...summary);
  made.append(head);
  made.addEventListener("toggle", () => made.append(...make()), {once: true});
  return made;
}

function list(tag, className, items) {
  const made = element(tag, className);
  made.append(...items);
  return made;
}

function facts(made, rows) {
  for (const [name, value] of rows) {
    if (!value) continue;
    made.append(element("dt", "", name), value instanceof Node ? value : breakable("dd", "", value));
  }
  return made;
}

const shortAnswer = 24;  // stands behind its question

function question({text, answer, ok}) {
  const made = breakable("li", ok ? "question" : "question missed", text);
  if (ok) made.append(breakable("div", answer.length > shortAnswer ? "answer" : "answer short", answer));
  return made;
}

function reason({text, count}) {
  const made = element("li", "reason");
  made.append(element("span", "times", `${count.toLocaleString("en")} \u00d7`), breakable("span", "", text));
  return made;
}

const shownReasons = 5;

function reasons({missed, reasons, reasonsLeftOut}) {
  if (!missed) return [];
  const made = [element("h5", "", "Missed because"), list("ul", "reasons", reasons.slice(0, shownReasons).map(reason))];
  const folded = reasons.slice(shownReasons);
  if (folded.length) {
    const words = counted(folded.length + reasonsLeftOut, "more reason", "more reasons");
    made.push(foldable("more", [words], () => [list("ul", "reasons", folded.map(reason)), ...leftOut(reasonsLeftOut, "reason", "reasons")]));
  }
  return made;
}

function leftOut(count, one, many) {
  return count ? [element("p", "left-out", `${counted(count, `more ${one} is`, `more ${many} are`)} left out.`)] : [];
}

function kinds(strategy) {
  const words = strategy.kinds.map(({name, asked, missed}) =>
    `${name} ${asked.toLocaleString("en")}${missed ? ` (${missed.toLocaleString("en")} missed)` : ""}`);
  return words.length ? [element("p", "kinds", `${words.join(", ")}.`)] : [];
}

function questions({asked, questions}) {
  if (!asked) return [];
  return [foldable("more", [counted(asked, "question", "questions")], () =>
    [list("ol", "questions", questions.map(question)), ...leftOut(asked - questions.length, "question", "questions")])];
}

function log(lines) {
  if (!lines.length) return [];
  return [foldable("more log", [counted(lines.length, "log line", "log lines")], () =>
    [list("ol", "", lines.map(line => breakable("li", "", line)))])];
}

function strategyBody(strategy) {
  const made = element("div", "body");
  if (strategy.failure) made.append(breakable("p", "failure", strategy.failure));
  made.append(element("p", "records", `Was given ${counted(strategy.records, "game", "games")} of the catalogue: what no earlier level had found.`),
              ...kinds(strategy), ...reasons(strategy), ...questions(strategy), ...log(strategy.lines));
  return made;
}

function strategySection(strategy) {
  const title = element("h4", "title", strategy.name);
  if (strategy.failure) title.append(" ", element("span", "failed", "failed"));
  const number = (className, count, text) => element("span", `number ${className}${count ? "" : " nothing"}`, text);
  return foldable("strategy", [
    title,
    number("found", strategy.found, `${strategy.found.toLocaleString("en")} found`),
    number("asked", strategy.asked, counted(strategy.asked, "question", "questions")),
    number("missed", strategy.missed, `${strategy.missed.toLocaleString("en")} missed`),
    number("time", strategy.milliseconds, `${strategy.milliseconds.toFixed(1)} ms`),
  ], () => [strategyBody(strategy)]);
}

function levelSection([level, strategies]) {
  const made = element("section", "level");
  made.append(element("h3", "", `Level ${level}`), ...strategies.map(strategySection));
  return made;
}

// Levels in the order of the scan: the highest came first.
function byLevel(strategies) {
  const levels = new Map();
  for (const strategy of strategies) levels.set(strategy.level, [...(levels.get(strategy.level) ?? []), strategy]);
  return [...levels];
}

function failures(strategies) {
  const failed = strategies.filter(strategy => strategy.failure);
  byId("failures").append(...failed.map(({name, failure}) => breakable("li", "", `${name} failed: ${failure}`)));
  byId("failures").hidden = failed.length === 0;
}

function report() {
  if (!data.report) return;
  const {catalogue, catalogueFile, began, version, raw, unique, strategies, notes = []} = data.report;
  byId("notes").append(...notes.map(note => breakable("li", "", note)));
  byId("notes").hidden = notes.length === 0;
  byId("totals").textContent =
    `${catalogue.toLocaleString("en")} games in the catalogue, ${raw} results, ${unique} after merging.`;
  facts(byId("about"), [["Catalogue", catalogueFile], ["Began", began], ["Tarnwick", version]]);
  failures(strategies);
  byId("strategies").append(...byLevel(strategies).map(levelSection));
  byId("report").hidden = byId("to-report").hidden = false;
}

function mergedItem(item, merged) {
  const made = element("li", "merged");
  made.append(element("div", "why", merged.why), facts(element("dl", "facts"), [
    ["Name", merged.name === item.name ? "" : merged.name],
    ["Path", merged.path === item.path ? "" : merged.path],
    ["Found by", `${merged.strategy}, level ${merged.level}`],
    ["Source", merged.source],
  ]));
  return made;
}

function explanationHead(item) {
  const head = element("div", "head");
  const name = element("h2", "", item.name || "(no name)");
  name.id = "explained";
  const close = element("button", "close", "Close");
  close.type = "button";
  close.addEventListener("click", () => byId("explanation").close());
  head.append(name, close);
  return head;
}

function explanationParts(item) {
  const {strategy, level, source, evidence, merged} = item.explanation;
  const made = [facts(element("dl", "facts"), [
    ["Found by", `${strategy}, level ${level}`], ["Source", source], ["Path", item.path], ["Launch", item.launch]])];
  made.push(element("h3", "", "Evidence"), evidence.length
    ? list("ol", "questions", evidence.map(question))
    : element("p", "left-out", "No question of this strategy names the game."));
  if (merged.length)
    made.push(element("h3", "", "Merged into it"), list("ul", "merges", merged.map(one => mergedItem(item, one))));
  return made;
}

function explain(item) {
  const dialog = byId("explanation");
  const body = list("div", "body", explanationParts(item));
  dialog.replaceChildren(explanationHead(item), body);
  dialog.showModal();
  dialog.scrollTop = 0;
}

// A click anywhere on a card opens it, but not one that ends a selection of its text.
gallery.addEventListener("click", event => {
  const chosen = event.target.closest(".card");
  const button = chosen?.querySelector(".explain");
  if (!button || event.target.closest("a")) return;
  if (event.target !== button && !getSelection().isCollapsed) return;
  // Where the keyboard goes back to.
  button.focus();
  explain(chosen.item);
});
byId("explanation").addEventListener("click", event => {
  if (event.target === event.currentTarget) event.currentTarget.close();
});

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
  if (event.key !== "Escape" || !search.value || byId("explanation").open) return;
  search.value = "";
  search.focus();
  filter();
});
