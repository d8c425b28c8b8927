-- The tables of the policy database.
--
-- Reads with SELECT * and the records rely on the column order. A key declared "INT PRIMARY KEY" is
-- unique but no alias of the rowid, so a NULL key stays NULL; "INTEGER PRIMARY KEY" lets the engine
-- assign the key where rows are inserted without one. What the console sends is stored as it is:
-- nothing here demands a value or a row in another table.

BEGIN;

-- Accounts, devices, logins, networks.
CREATE TABLE accounts (
  id INT PRIMARY KEY, locale_id INT, account_status_id INT, time_zone_id INT
);
CREATE TABLE devices (
  id INT PRIMARY KEY, account_id INT, policy_id INT, device_type_id INT, operating_system_id INT,
  device_status_id INT, name TEXT, description TEXT, comment TEXT, ccl_id TEXT, token TEXT,
  time_zone_id INT, manufacturer TEXT, domain TEXT, wan_ip TEXT, device_group_id INT,
  is_master INT, allow_remote_connection INT, device_detection_enabled INT, install_invite_id INT,
  device_uid TEXT, midex TEXT, os_display TEXT, os_build TEXT, os_internal_version TEXT
);
CREATE TABLE nics (
  id INT PRIMARY KEY, device_id INT, mac BLOB, ipv4 TEXT, ipv6 TEXT
);
CREATE TABLE logins (
  id INT PRIMARY KEY, device_id INT, name TEXT, policy_id INT, description TEXT, comment TEXT,
  is_admin INT
);
CREATE TABLE login_details (
  id INT PRIMARY KEY, login_id INT, browser TEXT, browser_version TEXT
);
CREATE TABLE networks (
  id INT PRIMARY KEY, account_id INT, wan_ip TEXT
);
CREATE TABLE device_groups (
  id INT PRIMARY KEY, account_id INT, name TEXT, is_default INT
);

-- Policies and authentication.
CREATE TABLE policies (
  id INT PRIMARY KEY, policy_owner_id INT, name TEXT, override_password TEXT, is_default INT,
  uninstall_password TEXT, uninstall_requires_password INT, error_log_enabled INT,
  warning_log_enabled INT, information_log_enabled INT, proxy_mode_id INT, proxy_type_id INT,
  proxy_browser_id INT, proxy_server_auth_enabled INT, proxy_auth_id INT, proxy_server_name TEXT,
  proxy_server_username TEXT, proxy_server_password TEXT, proxy_server_port INT,
  proxy_script TEXT, force_ssl INT, analytics_enabled INT, self_defense_enabled INT,
  proxy_bypass_local INT, company_id TEXT
);
CREATE TABLE auth_logs (
  id INTEGER PRIMARY KEY, date_time INT, success INT, table_id INT
);

-- Services and configuration.
CREATE TABLE services (
  id INT PRIMARY KEY, name TEXT, row_version INT
);
CREATE TABLE policy_services (
  id INT PRIMARY KEY, policy_id INT, service_id INT, enabled INT
);
CREATE TABLE device_services (
  id INT PRIMARY KEY, device_id INT, service_id INT, device_service_status_id INT,
  remove_competitive_products INT, enabled INT, upgrade_action_id INT, with_firewall INT,
  with_mail_guard INT, with_identity_guard INT, with_web_guard INT, with_spam_filter INT,
  with_isolation INT, with_file_guard INT, with_recovery_media INT, with_site_rating INT,
  with_mail_server_guard INT, with_portal_server_guard INT, with_browser_cleaner INT,
  with_secure_browser INT, with_file_eraser INT, with_app_updater INT, with_network_scanner INT,
  with_dns_guard INT, with_password_vault INT, with_camera_guard INT, management_url TEXT,
  installation_token TEXT
);
CREATE TABLE service_configurations (
  id INTEGER PRIMARY KEY, service_id INT, "key" TEXT, value TEXT, is_url INT, row_version INT
);
CREATE TABLE global_configurations (
  id INT PRIMARY KEY, value TEXT
);
CREATE TABLE device_subservice_versions (
  subservice_id INT PRIMARY KEY, device_id INT, major INT, minor INT, micro INT, build INT,
  incremental INT, version_date TEXT, out_of_date INT
);

-- Web filter.
CREATE TABLE categories (
  id INT PRIMARY KEY, name TEXT, description TEXT, notification TEXT, category_type_id INT,
  client_should_cache INT, is_search_engine INT, is_pornography INT, is_advertisement INT,
  is_icat INT, is_google_malware INT, is_google_phishing INT, is_se_keyword INT, row_version INT
);
CREATE TABLE filter_settings (
  id INT PRIMARY KEY, policy_service_id INT, password_override INT, block_uncategorized INT,
  allow_list_only INT, image_filter INT, allow_from_referral INT, safety_lock INT,
  force_safe_search INT, schedule BLOB, icat INT
);
CREATE TABLE filter_urls (
  id INTEGER PRIMARY KEY, filter_setting_id INT, url TEXT, allowed INT
);
CREATE TABLE filter_categories (
  id INT PRIMARY KEY, category_id INT, filter_setting_id INT, filter_action_id INT
);
CREATE TABLE filter_proxy_ports (
  id INT PRIMARY KEY, filter_setting_id INT, port INT, description TEXT
);
CREATE TABLE proxy_ports (
  id INT PRIMARY KEY, port INT, description TEXT
);
CREATE TABLE safe_search_parameters (
  id INT PRIMARY KEY, search_url TEXT, name TEXT, value TEXT, repeat_on_each_request INT,
  row_version INT
);
CREATE TABLE icat_keywords (
  id INT PRIMARY KEY, word TEXT, row_version INT
);
CREATE TABLE never_block_apps (
  id INT PRIMARY KEY, file_name TEXT, row_version INT
);
CREATE TABLE never_block_domains (
  id INT PRIMARY KEY, domain TEXT, row_version INT
);
CREATE TABLE swg_settings (
  username TEXT, password TEXT, server TEXT, primary_internal_ipv4_dns TEXT,
  secondary_internal_ipv4_dns TEXT, primary_internal_ipv6_dns TEXT,
  secondary_internal_ipv6_dns TEXT, shift_policy_id INT, split_dns_enabled INT,
  split_dns_domains TEXT
);

-- Application control.
CREATE TABLE apps (
  id INT PRIMARY KEY, app_type_id INT, name TEXT
);
CREATE TABLE app_files (
  id INT PRIMARY KEY, app_id INT, name TEXT
);
CREATE TABLE app_checksums (
  id INTEGER PRIMARY KEY, app_id INT, md5 BLOB, control_flag INT
);
CREATE TABLE app_controls (
  id INT PRIMARY KEY, policy_service_id INT, enabled INT, policy_id INT
);
CREATE TABLE app_control_apps (
  id INT PRIMARY KEY, app_id INT, app_control_id INT
);

-- Alerts.
CREATE TABLE alert_event_types (
  id INT PRIMARY KEY, alert_id INT, event_type_id INT, name TEXT, enabled INT,
  suppression_duration INT, threshold INT, threshold_unit_id INT, time_window INT, details TEXT,
  auto_acknowledge_enabled INT
);
CREATE TABLE alert_logs (
  id INTEGER PRIMARY KEY, alert_event_type_id INT, alert_id INT, details TEXT, event_type_id INT,
  alert_name TEXT, event_start INT, event_end INT
);
CREATE TABLE alert_logs_buffer (
  id INTEGER PRIMARY KEY, alert_event_type_id INT, event_time INT, details TEXT
);
CREATE TABLE alerts_sent (
  id INTEGER PRIMARY KEY, event_type_id INT, event_time INT
);
CREATE TABLE alert_checks (
  alert_event_type_id INT PRIMARY KEY, date_time INT, alert_sent INT
);
CREATE TABLE sales_alert_options (
  id INT PRIMARY KEY, partner_id INT, av_enabled INT, backup_enabled INT, cpu_enabled INT,
  disk_enabled INT, filter_enabled INT, ram_enabled INT
);

-- Antivirus settings.
CREATE TABLE nxb_av_settings (
  id INT PRIMARY KEY, policy_service_id INT, nxb_settings_id TEXT, download_url TEXT,
  public_key TEXT, license TEXT, config TEXT, ini_file TEXT, wexupd_file TEXT
);
CREATE TABLE appearances (
  id INT PRIMARY KEY, av_setting_id INT, tray_notification INT, user_notification INT,
  user_tray_icon_enabled INT, license_upgrade_notification_enabled INT, sound_events_enabled INT,
  play_sounds_on_full_screen INT, browser_performance_advice_enabled INT,
  content_filter_notifications INT, lm_tray_icon_enabled INT, lm_program_menu_enabled INT,
  shredder_visible INT, gamemode_on_fullscreen INT, animate_transitions INT,
  ignore_warning_components TEXT
);
CREATE TABLE av_schedules (
  id INT PRIMARY KEY, av_setting_id INT, delay_on_fullscreen_application INT, enabled INT,
  run_in_the_low_power_mode INT, run_on_computer_startup_if_missed INT, schedule_name TEXT,
  av_schedule_type_id INT, period_available INT, day_interval_available INT, day_interval INT,
  days_of_week_available INT, days_of_week INT, day_of_month_available INT, day_of_month INT,
  run_on_computer_startup INT, period_minutes INT, day_minutes INT, startup_minutes INT,
  stop_by_user_enabled INT, pause_by_user_enabled INT, auto_update_state_id INT,
  rerun_update_on_internet_connection INT
);
CREATE TABLE last_scan_summaries (
  id INT PRIMARY KEY, device_id INT, end_time INT, threats_found INT
);

-- Device care.
CREATE TABLE premium_remote_control_settings (
  id INT PRIMARY KEY, policy_service_id INT, consent_message TEXT, consent_timeout INT,
  stream_quality_id INT, leave_aero INT, leave_background INT, leave_effects INT,
  consent_required INT
);
CREATE TABLE restart_policy_settings (
  id INT PRIMARY KEY, policy_id INT, restart_required_option_id INT, force_action_time INT,
  display_dialog_countdown INT, display_system_countdown INT, user_can_extend_time INT,
  user_extend_time INT, user_cancel_timeout_logs_off INT, user_cancel_timeout_restart INT
);
CREATE TABLE support_display_settings (
  enabled INT, company_name_enabled INT, company_name TEXT, phone_number_enabled INT,
  phone_number TEXT, email_address_enabled INT, email_address TEXT, mobile_number_enabled INT,
  mobile_number TEXT, additional_information TEXT, link_1_enabled INT, link_1_text TEXT,
  link_1_url TEXT, link_2_enabled INT, link_2_text TEXT, link_2_url TEXT, link_3_enabled INT,
  link_3_text TEXT, link_3_url TEXT, logo_enabled INT, logo TEXT, contact_name_enabled INT,
  contact_name TEXT
);
CREATE TABLE account_backup_details (
  account_id INT PRIMARY KEY, sos_id TEXT, password TEXT, backups_allowed INT
);
CREATE TABLE device_backup_details (
  id INT PRIMARY KEY, device_id INT, name TEXT, login TEXT, password TEXT,
  shadow_protect_license_key TEXT, egr_license_key TEXT
);
CREATE TABLE device_backup_statistics (
  backup_status_id INT, backup_status_date INT, backup_success_date INT, backup_duration INT,
  backup_file_count INT, file_count_total INT, backup_size INT, error_file_count INT,
  error_file_size INT, next_scheduled_date INT, current_usage INT
);
CREATE TABLE time_zones (
  id INT PRIMARY KEY, name TEXT, windows_data TEXT, row_version INT
);
CREATE TABLE time_servers (
  id INT PRIMARY KEY, url TEXT, row_version INT
);
CREATE TABLE install_invites (
  id INT PRIMARY KEY, account_id INT, email_address TEXT, token TEXT, link TEXT, row_version INT
);
CREATE TABLE installation_logins (
  id INT PRIMARY KEY, account_id INT, login TEXT, password TEXT
);

-- The question for the remote control row of a device joins it under this shorter name.
CREATE VIEW remote_control_settings AS SELECT * FROM premium_remote_control_settings;

-- A rule set takes its policy from its policy service, in whichever order the two arrive.
CREATE TRIGGER app_controls_policy_insert AFTER INSERT ON app_controls BEGIN
  UPDATE app_controls
    SET policy_id = (SELECT policy_id FROM policy_services WHERE id = NEW.policy_service_id)
    WHERE rowid = NEW.rowid;
END;
CREATE TRIGGER app_controls_policy_update AFTER UPDATE OF policy_service_id ON app_controls BEGIN
  UPDATE app_controls
    SET policy_id = (SELECT policy_id FROM policy_services WHERE id = NEW.policy_service_id)
    WHERE rowid = NEW.rowid;
END;
CREATE TRIGGER policy_services_policy_insert AFTER INSERT ON policy_services BEGIN
  UPDATE app_controls SET policy_id = NEW.policy_id WHERE policy_service_id = NEW.id;
END;
CREATE TRIGGER policy_services_policy_update AFTER UPDATE OF id, policy_id ON policy_services BEGIN
  UPDATE app_controls SET policy_id = NEW.policy_id WHERE policy_service_id = NEW.id;
END;
CREATE TRIGGER policy_services_policy_delete AFTER DELETE ON policy_services BEGIN
  UPDATE app_controls SET policy_id = NULL WHERE policy_service_id = OLD.id;
END;

-- What is looked up in tables that grow. Each index has one column, so that rows of one value are
-- found in the order in which they lie in the table: the first row of an unordered read stays the
-- same one. A read that the index alone could answer says NOT INDEXED.
CREATE INDEX app_files_by_name ON app_files(name);
CREATE INDEX app_checksums_by_md5 ON app_checksums(md5);
CREATE INDEX app_control_apps_by_app ON app_control_apps(app_id);
CREATE INDEX app_controls_by_policy_service ON app_controls(policy_service_id);
CREATE INDEX nics_by_device ON nics(device_id);
CREATE INDEX device_services_by_device ON device_services(device_id);
CREATE INDEX alert_logs_buffer_by_type ON alert_logs_buffer(alert_event_type_id);
CREATE INDEX devices_by_wan_ip ON devices(wan_ip);
CREATE INDEX categories_by_name ON categories(name);
CREATE INDEX never_block_domains_by_domain ON never_block_domains(domain);

COMMIT;
