-- The tables of a study on a server. Texts are ordered by code point, as in a file.
CREATE TABLE study (
  version integer NOT NULL
);
CREATE TABLE study_layouts (
  id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
  digest text COLLATE "C" NOT NULL UNIQUE
);
CREATE TABLE study_sections (
  layout_id bigint NOT NULL,
  section_no integer NOT NULL,
  unit text COLLATE "C" NOT NULL,
  unit_id text COLLATE "C" NOT NULL,
  family text COLLATE "C" NOT NULL,
  name text COLLATE "C" NOT NULL,
  is_teaching smallint NOT NULL,
  first_element integer NOT NULL,
  element_count integer NOT NULL,
  PRIMARY KEY (layout_id, section_no)
);
CREATE TABLE study_columns (
  layout_id bigint NOT NULL,
  section_no integer NOT NULL,
  column_no integer NOT NULL,
  quantity text COLLATE "C" NOT NULL,
  value_unit text COLLATE "C" NOT NULL,
  PRIMARY KEY (layout_id, section_no, column_no)
);
CREATE TABLE study_elements (
  layout_id bigint NOT NULL,
  element_no integer NOT NULL,
  section_no integer NOT NULL,
  sub_group text COLLATE "C" NOT NULL,
  item text COLLATE "C" NOT NULL,
  occurrence integer NOT NULL,
  PRIMARY KEY (layout_id, element_no)
);
CREATE TABLE study_runs (
  id integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
  name text COLLATE "C" NOT NULL UNIQUE,
  file text COLLATE "C" NOT NULL,
  added text COLLATE "C" NOT NULL,
  program text COLLATE "C" NOT NULL,
  content_digest text COLLATE "C" NOT NULL,
  limits_digest text COLLATE "C" NOT NULL,
  selection text COLLATE "C" NOT NULL,
  layout_id bigint NOT NULL REFERENCES study_layouts (id),
  value_count bigint NOT NULL,
  invalid bigint NOT NULL
);
CREATE INDEX study_runs_by_layout ON study_runs (layout_id);
CREATE TABLE study_labels (
  run_id integer NOT NULL,
  name text COLLATE "C" NOT NULL,
  value text COLLATE "C" NOT NULL,
  PRIMARY KEY (run_id, name)
);
CREATE TABLE study_run_columns (
  run_id integer NOT NULL,
  section_no integer NOT NULL,
  column_no integer NOT NULL,
  limit_value double precision,
  limit_unit text COLLATE "C",
  exceeded bigint NOT NULL,
  not_a_number bigint NOT NULL,
  compared bigint NOT NULL,
  without_data bigint NOT NULL,
  worst_utilisation double precision,
  PRIMARY KEY (run_id, section_no, column_no)
);
-- The widest columns first, truth values of one byte, and no index with the column's number: all keep the table small.
CREATE TABLE study_values (
  value double precision NOT NULL,
  time double precision,
  run_id integer NOT NULL,
  element_no integer NOT NULL,
  step integer,
  count integer NOT NULL,
  nans integer NOT NULL,
  column_no smallint NOT NULL,
  valid boolean NOT NULL,
  exceeded boolean NOT NULL
);
CREATE INDEX study_values_by_element ON study_values (run_id, element_no) WITH (fillfactor = 100);
INSERT INTO study VALUES (1);
