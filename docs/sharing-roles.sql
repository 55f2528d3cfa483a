-- What uploaders and readers of a shared archive may do; run once as a superuser, in the database that has
-- the tables. New users become members: createuser --pwprompt --role=tessmar_upload ada
BEGIN;
CREATE ROLE tessmar_upload NOLOGIN;
CREATE ROLE tessmar_read NOLOGIN;
GRANT USAGE ON SCHEMA tessmar TO tessmar_upload, tessmar_read;

-- A reader reads.
GRANT SELECT ON ALL TABLES IN SCHEMA tessmar TO tessmar_read;

-- An uploader adds, and sees what it needs to know what is new. It cannot read a measurement, and change or
-- delete none.
GRANT INSERT ON tessmar.logger, tessmar.upload, tessmar.block, tessmar.record, tessmar.channel, tessmar.event
  TO tessmar_upload;
GRANT SELECT ON tessmar.version, tessmar.logger TO tessmar_upload;
GRANT SELECT (id, uuid, ended, records, logger_id, logger_at) ON tessmar.upload TO tessmar_upload;
GRANT SELECT (upload_id, number) ON tessmar.block, tessmar.record TO tessmar_upload;
GRANT SELECT (uuid, logger_id, at, kind, into_logger, uploads) ON tessmar.event TO tessmar_upload;

-- What "the last change wins" changes: names, the logger that a thing belongs to, and how an upload ended.
GRANT UPDATE (name, name_at, firmware, first_seen, last_seen) ON tessmar.logger TO tessmar_upload;
GRANT UPDATE (logger_id, logger_at, state, ended, records) ON tessmar.upload TO tessmar_upload;
GRANT UPDATE (logger_id) ON tessmar.event TO tessmar_upload;

-- Everybody may say "record" for "tessmar.record".
ALTER DATABASE :"DBNAME" SET search_path = tessmar, public;
COMMIT;
