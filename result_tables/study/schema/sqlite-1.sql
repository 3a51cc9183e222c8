-- The tables of a study in a file. Columns of numbers that may be anything have no type: one would turn -0.0 into 0.
-- NaN, which the file format does not have, is the text 'NaN'.
CREATE TABLE study_layouts (
  id INTEGER PRIMARY KEY,
  digest TEXT NOT NULL UNIQUE
);
CREATE TABLE study_sections (
  layout_id INTEGER NOT NULL,
  section_no INTEGER NOT NULL,
  unit TEXT NOT NULL,
  unit_id TEXT NOT NULL,
  family TEXT NOT NULL,
  name TEXT NOT NULL,
  is_teaching INTEGER NOT NULL,
  first_element INTEGER NOT NULL,
  element_count INTEGER NOT NULL,
  PRIMARY KEY (layout_id, section_no)
) WITHOUT ROWID;
CREATE TABLE study_columns (
  layout_id INTEGER NOT NULL,
  section_no INTEGER NOT NULL,
  column_no INTEGER NOT NULL,
  quantity TEXT NOT NULL,
  value_unit TEXT NOT NULL,
  PRIMARY KEY (layout_id, section_no, column_no)
) WITHOUT ROWID;
CREATE TABLE study_elements (
  layout_id INTEGER NOT NULL,
  element_no INTEGER NOT NULL,
  section_no INTEGER NOT NULL,
  sub_group TEXT NOT NULL,
  item TEXT NOT NULL,
  occurrence INTEGER NOT NULL,
  PRIMARY KEY (layout_id, element_no)
) WITHOUT ROWID;
CREATE TABLE study_runs (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  file TEXT NOT NULL,
  added TEXT NOT NULL,
  program TEXT NOT NULL,
  content_digest TEXT NOT NULL,
  limits_digest TEXT NOT NULL,
  selection TEXT NOT NULL,
  layout_id INTEGER NOT NULL REFERENCES study_layouts (id),
  value_count INTEGER NOT NULL,
  invalid INTEGER NOT NULL
);
CREATE INDEX study_runs_by_layout ON study_runs (layout_id);
CREATE TABLE study_labels (
  run_id INTEGER NOT NULL,
  name TEXT NOT NULL,
  value TEXT NOT NULL,
  PRIMARY KEY (run_id, name)
) WITHOUT ROWID;
CREATE TABLE study_run_columns (
  run_id INTEGER NOT NULL,
  section_no INTEGER NOT NULL,
  column_no INTEGER NOT NULL,
  limit_value,
  limit_unit TEXT,
  exceeded INTEGER NOT NULL,
  not_a_number INTEGER NOT NULL,
  compared INTEGER NOT NULL,
  without_data INTEGER NOT NULL,
  worst_utilisation,
  PRIMARY KEY (run_id, section_no, column_no)
) WITHOUT ROWID;
CREATE TABLE study_values (
  run_id INTEGER NOT NULL,
  element_no INTEGER NOT NULL,
  column_no INTEGER NOT NULL,
  value NOT NULL,
  step INTEGER,
  time,
  count INTEGER NOT NULL,
  nans INTEGER NOT NULL,
  valid INTEGER NOT NULL,
  exceeded INTEGER NOT NULL,
  PRIMARY KEY (run_id, element_no, column_no)
) WITHOUT ROWID;
PRAGMA application_id = 1265849204; -- "KsSt"
PRAGMA user_version = 1;
