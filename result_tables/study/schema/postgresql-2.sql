-- For questions: an element by its name, however long, and what people's own SQL sees.
CREATE INDEX study_elements_by_item ON study_elements USING hash (item);
CREATE VIEW result_values AS
SELECT r.name AS run, r.file, s.unit, s.unit_id, s.family, s.name AS section, e.sub_group, e.item, e.occurrence,
       v.valid::integer AS valid, c.quantity, v.value, c.value_unit, l.limit_value, v.exceeded::integer AS exceeded, v.step, v.time, v.count, v.nans
FROM study_values v
JOIN study_runs r ON r.id = v.run_id
JOIN study_elements e ON e.layout_id = r.layout_id AND e.element_no = v.element_no
JOIN study_sections s ON s.layout_id = r.layout_id AND s.section_no = e.section_no
JOIN study_columns c ON c.layout_id = r.layout_id AND c.section_no = e.section_no AND c.column_no = v.column_no
JOIN study_run_columns l ON l.run_id = v.run_id AND l.section_no = e.section_no AND l.column_no = v.column_no;
UPDATE study SET version = 2;
