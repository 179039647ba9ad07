<?xml version="1.0" encoding="UTF-8"?>
<profile id="pmr446" showInChannelList="1">
  <label lang="en">PMR446</label>
  <label lang="de">PMR446</label>
  <description lang="en">Licence-free handheld radios, 446.0 to 446.2 MHz: 16 channels of 12.5 kHz, or 32 of 6.25 kHz for digital sets. Source: ECC/DEC/(15)05.</description>
  <description lang="de">Anmeldefreie Handfunkgeräte, 446,0 bis 446,2 MHz: 16 Kanäle zu 12,5 kHz oder 32 zu 6,25 kHz für digitale Geräte. Quelle: ECC/DEC/(15)05.</description>
  <begin>446 MHz</begin>
  <end>446.2 MHz</end>
  <channels>
    <!-- Both rasters fill the same band: a radio uses the one or the other. -->
    <range label="12.5 kHz" type="provider" selectable="1">
      <begin>446 MHz</begin>
      <end>446.2 MHz</end>
      <color>#2e8b57</color>
      <comment>Analogue and digital, centres 446.00625 to 446.19375 MHz</comment>
      <channels start="446 MHz" width="12.5 kHz" first="1" count="16"/>
    </range>
    <range label="6.25 kHz" type="provider" selectable="1">
      <begin>446 MHz</begin>
      <end>446.2 MHz</end>
      <color>#74b98f</color>
      <comment>Digital, centres 446.003125 to 446.196875 MHz</comment>
      <channels start="446 MHz" width="6.25 kHz" first="1" count="32"/>
    </range>
  </channels>
</profile>
